// The texts of `kelvarin graph`.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin::graph_messages {

inline QString standardInput() {
  return QStringLiteral("standard input");
}

inline QString notLaidOut(const QString& file) {
  return QStringLiteral("%1: not in the layout of 'kelvarin graph fmt', which would write it anew.")
      .arg(file);
}
inline QString laidOutAnew(const QString& file) {
  return QStringLiteral("%1: laid out anew").arg(file);
}
// A fault of the program.
inline QString layoutChangesMeaning(const QString& file) {
  return QStringLiteral(
             "%1: the new layout would mean something else, so the file is as it was. Please "
             "report it with the file.")
      .arg(file);
}

inline QString fileExists(const QString& file) {
  return QStringLiteral("'%1' exists already. Choose another name, or replace it by --force.")
      .arg(file);
}
inline QString graphMade(const QString& file) {
  return QStringLiteral("'%1' is ready to run: kelvarin run '%1'").arg(file);
}

// What an upgrade has changed.
inline QString graphVersionAdded() {
  return QStringLiteral("the graph states the version of its layout, 1.0");
}
inline QString encodedAsUtf8() {
  return QStringLiteral("the file is UTF-8 without a byte order mark");
}
inline QString expressionMoved(const QString& action) {
  return QStringLiteral("'%1': the expression stands in an element instead of an attribute")
      .arg(action);
}
inline QString variablesWrapped(const QString& action) {
  return QStringLiteral("'%1': the variables stand inside <InputVars>").arg(action);
}
inline QString outputExpressionMoved(const QString& output, const QString& action) {
  return QStringLiteral("'%2', output '%1': the expression is the element's text")
      .arg(output, action);
}
inline QString typeInLetters(const QString& output, const QString& action) {
  return QStringLiteral("'%2', output '%1': the type is in meta instead of isNumber")
      .arg(output, action);
}
inline QString versionRaised(const QString& action, const QString& before, const QString& now) {
  return QStringLiteral("'%1': version %3 instead of %2").arg(action, before, now);
}
inline QString nothingToUpgrade(const QString& file) {
  return QStringLiteral("%1: nothing to do, the file is in today's form").arg(file);
}
inline QString upgradeOf(const QString& file, const QString& change) {
  return QStringLiteral("%1: %2").arg(file, change);
}
inline QString writtenAnew(const QString& file) {
  return QStringLiteral("%1: written in today's form").arg(file);
}
inline QString olderForm(const QString& file) {
  return QStringLiteral("%1: in an older form; 'kelvarin graph upgrade' would write it anew")
      .arg(file);
}

}  // namespace kelvarin::graph_messages
