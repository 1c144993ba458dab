// The texts about regular expressions that cannot be used, once each.
#pragma once

#include <cstddef>

#include <QString>

namespace kelvarin::messages {

inline QString wrongPatternAt(const QString& pattern, std::size_t position, const QString& reason) {
  return QStringLiteral("The regular expression '%1' is wrong at its position %2: %3")
      .arg(pattern, QString::number(position), reason);
}
inline QString wrongPattern(const QString& pattern, const QString& reason) {
  return QStringLiteral("The regular expression '%1' is refused: %2").arg(pattern, reason);
}
inline QString wrongReplacement(const QString& replacement, std::size_t position,
                                const QString& reason) {
  return QStringLiteral("The replacement '%1' of regexReplace is wrong at its position %2: %3")
      .arg(replacement, QString::number(position), reason);
}

// Reasons.
inline QString groupNotClosed() {
  return QStringLiteral(
      "a group that begins with ( is not closed. Add a ), or write \\( for the bracket itself.");
}
inline QString groupNotOpen() {
  return QStringLiteral("a ) closes no group. Remove it, or write \\) for the bracket itself.");
}
inline QString setNotClosed() {
  return QStringLiteral(
      "a set that begins with [ is not closed. Add a ], or write \\[ for the bracket itself.");
}
inline QString unknownPatternEscape(const QString& escape) {
  return QStringLiteral(
             "'%1' means nothing in a regular expression. Write \\\\ for a backslash itself.")
      .arg(escape);
}
inline QString backReference(const QString& escape) {
  return QStringLiteral(
             "'%1' would repeat what a group matched, which has no bounds in time. Compare the "
             "groups outside, with regexExtract.")
      .arg(escape);
}
inline QString escapesNothing() {
  return QStringLiteral(
      "a backslash at the end escapes nothing. Write \\\\ for the backslash itself.");
}
inline QString singleBytes() {
  return QStringLiteral("'\\C' would cut characters into bytes. Write . for any character.");
}
inline QString unknownClass(const QString& name) {
  return QStringLiteral(
             "'%1' is no class of characters. There are \\d, \\w and \\s, [[:alpha:]] and its kin, "
             "and those of Unicode, as \\pL.")
      .arg(name);
}
inline QString reversedRange(const QString& range) {
  return QStringLiteral(
             "the range '%1' ends before it begins. Exchange its ends, or write the - last in the "
             "set for the sign itself.")
      .arg(range);
}
inline QString repeatsNothing(const QString& sign) {
  return QStringLiteral(
             "'%1' has nothing before it to repeat. Write a backslash before it for the sign "
             "itself.")
      .arg(sign);
}
inline QString wrongRepeatCount(const QString& count) {
  return QStringLiteral(
             "'%1' cannot be counted: counts go up to 1000, those of repetitions inside one "
             "another multiplied, and the smaller one comes first.")
      .arg(count);
}
inline QString repeatsRepetition(const QString& signs) {
  return QStringLiteral("'%1' are two repetitions in a row. Put what the second repeats in (?:).")
      .arg(signs);
}
inline QString unknownGroupKind(const QString& opening) {
  return QStringLiteral(
             "'%1' is not known. Groups begin with (, (?:, (?i) or (?P<name>; looking ahead or "
             "back is not possible in bounded time.")
      .arg(opening);
}
inline QString wrongGroupName(const QString& name) {
  return QStringLiteral(
             "'%1' is no name of a group. Names have letters, digits and _, as in (?P<name>x).")
      .arg(name);
}
inline QString patternNotUtf8() {
  return QStringLiteral("it is no valid UTF-8.");
}
inline QString patternTooLong(std::size_t limit) {
  return QStringLiteral("it has more than %1 bytes. Use several expressions.").arg(limit);
}
inline QString tooManyGroups(std::size_t count, std::size_t limit) {
  return QStringLiteral(
             "it has %1 groups, and at most %2 are possible. Write (?: instead of ( for those "
             "whose text is not asked for.")
      .arg(QString::number(count), QString::number(limit));
}
inline QString patternTooLarge() {
  return QStringLiteral(
      "it would take too much memory. Write smaller counts of repetitions, or fewer of them inside "
      "one another.");
}
inline QString unknownReplacementEscape(const QString& escape) {
  return QStringLiteral(
             "'%1' means nothing. Write \\0 for the match, \\1 to \\9 for its groups and \\\\ "
             "for a backslash.")
      .arg(escape);
}
inline QString noSuchGroup(const QString& reference, std::size_t count) {
  return QStringLiteral("'%1' names a group, and the regular expression has %2.")
      .arg(reference, QString::number(count));
}

}  // namespace kelvarin::messages
