// The texts that the contract's own operations show or log.
#pragma once

#include <QString>

namespace kelvarin::messages {

inline QString documentTypeRefused() {
  return QStringLiteral(
      "The file has a document type (<!DOCTYPE ...>), which is not allowed here. Remove it.");
}
inline QString tooManyLevels(std::size_t maximum) {
  return QStringLiteral("The elements are nested more than %1 levels deep.").arg(maximum);
}
inline QString otherEncoding(const QString& encoding) {
  return QStringLiteral("The file says that its encoding is \"%1\". Save it as UTF-8.")
      .arg(encoding);
}
inline QString invalidEncoding(const QString& encoding) {
  return QStringLiteral("The file is not valid %1 text from here on. Save it as UTF-8.")
      .arg(encoding);
}
inline QString noElement() {
  return QStringLiteral("The file holds no XML element.");
}
inline QString notWellFormed(const QString& reason) {
  return QStringLiteral("The XML is not well formed: %1").arg(reason);
}
inline QString notWellFormedInside(const QString& reason, const QString& element, long long line) {
  return QStringLiteral("The XML is not well formed: %1 (inside <%2>, which opens at line %3)")
      .arg(reason, element, QString::number(line));
}
inline QString elementNotClosed(const QString& element, long long line) {
  return QStringLiteral("The file ends before <%1>, which opens at line %2, is closed.")
      .arg(element, QString::number(line));
}

inline QString helpPage(const QString& helpId) {
  return QStringLiteral("The help of this action is the page \"%1\".").arg(helpId);
}

inline QString noPictures() {
  return QStringLiteral("Icons are not drawn: this program runs without a screen.");
}
inline QString notDrawable(const QString& path) {
  return QStringLiteral("The picture \"%1\" is missing or is no SVG file.").arg(path);
}
inline QString noColumnPicked() {
  return QStringLiteral("No column was picked: there is no screen to ask on.");
}
inline QString noFilePicked() {
  return QStringLiteral("No file was picked: there is no screen to ask on.");
}
inline QString pickColumnTitle() {
  return QStringLiteral("Columns");
}
inline QString pickColumn() {
  return QStringLiteral("Column:");
}
inline QString cannotRunBranch(const QString& action) {
  return QStringLiteral("The action \"%1\" was not run: this program cannot run a part of a graph.")
      .arg(action);
}
inline QString branchFailed(const QString& reason) {
  return QStringLiteral("The part of the graph was not run to its end: %1.").arg(reason);
}
inline QString beginningOfList(const QString& beginning, long long count) {
  return QStringLiteral("%1, ... (%2 in all)").arg(beginning, QString::number(count));
}
inline QString nameCollision(const QString& action, const QString& column, int index) {
  return QStringLiteral(
             "The action \"%1\" cannot create the column \"%2\": its input has a column of that "
             "name "
             "already (number %3). Choose another name.")
      .arg(action, column, QString::number(index + 1));
}

inline QString notARegularFile(const QString& path) {
  return QStringLiteral("\"%1\" is no file that can be read: it is a folder or a device.")
      .arg(path);
}
inline QString fileError(const QString& path, const QString& reason) {
  return QStringLiteral("The file \"%1\" cannot be read: %2").arg(path, reason);
}
inline QString noSavedTable(const QString& path) {
  return QStringLiteral("The file \"%1\" is no saved table, or its head is damaged.").arg(path);
}
inline QString damagedTable(const QString& path, long long offset) {
  return QStringLiteral("The saved table \"%1\" is damaged or cut off at byte %2.")
      .arg(path, QString::number(offset));
}

}  // namespace kelvarin::messages
