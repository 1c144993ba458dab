// The texts that the contract's own operations show or log.
#pragma once

#include <QString>
#include <QStringList>

namespace kelvarin::messages {

inline QString helpPage(const QString& helpId) {
  return QStringLiteral("The help of this action is the page \"%1\".").arg(helpId);
}

inline QString noColumnPicked() {
  return QStringLiteral("No column was picked: there is no screen to ask on.");
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

inline QString noSuchColumn(const QString& name) {
  return QStringLiteral("The table has no column '%1'.").arg(name);
}
inline QString noColumnNamed() {
  return QStringLiteral("No column is named where one is needed.");
}
inline QString noColumns() {
  return QStringLiteral(" It has no columns at all.");
}
inline QString columnsMeant(const QStringList& near) {
  return QStringLiteral(" Did you mean '%1'?").arg(near.join(QStringLiteral("' or '")));
}
inline QString blanksAround(const QString& column) {
  return QStringLiteral(" The name of the column '%1' begins or ends with a blank.").arg(column);
}
inline QString allColumns(const QStringList& columns) {
  return QStringLiteral(" The table's columns: '%1'.").arg(columns.join(QStringLiteral("', '")));
}
inline QString columnCount(qsizetype count) {
  return QStringLiteral(" It has %1 columns; 'kelvarin check' lists them.").arg(count);
}

inline QString atGraphPlace(const QString& file, long long line, long long column,
                            const QString& message) {
  return QStringLiteral("%1:%2:%3: %4")
      .arg(file.isEmpty() ? QStringLiteral("graph") : file, QString::number(line),
           QString::number(column), message);
}
inline QString unknownElement(const QString& element, const QString& parent,
                              const QStringList& near, const QStringList& known) {
  const QString what = QStringLiteral("Unknown element <%1> inside <%2>.").arg(element, parent);
  if (known.isEmpty()) {
    return what + QStringLiteral(" No element may stand there.");
  }
  const QString all = QStringLiteral(" Known there: %1.").arg(known.join(QStringLiteral(", ")));
  return near.isEmpty() || near == known
             ? what + all
             : what + QStringLiteral(" Did you mean <%1>?").arg(near.join(u"> or <")) + all;
}
inline QString strayText(const QString& element, const QString& text) {
  constexpr qsizetype kLongest = 80;
  return QStringLiteral("The text '%1' stands inside <%2>, where no text has a meaning.")
      .arg(text.size() <= kLongest ? text : text.left(kLongest) + QStringLiteral("..."), element);
}

}  // namespace kelvarin::messages
