// The texts about sort orders that a user reads.
#pragma once

#include <QString>

namespace kelvarin::sort_order_messages {

inline QString entryWithoutDirection(const QString& rest) {
  return QStringLiteral(
             "sortedOn: '%1' is not a column and a direction. Write the column's name, a blank and "
             "A or Z "
             "(texts up or down), 0 or 9 (numbers and keys up or down), entries separated by "
             "commas.")
      .arg(rest);
}

inline QString unknownColumn(const QString& column, const QString& known) {
  return QStringLiteral("sortedOn: there is no column '%1'. The columns are: %2.")
      .arg(column, known);
}

inline QString columnTwice(const QString& column) {
  return QStringLiteral("sortedOn: the column '%1' is listed twice.").arg(column);
}

inline QString directionOfAnotherType(const QString& column, const QString& kind,
                                      const QString& allowed, QChar given) {
  return QStringLiteral("sortedOn: the column '%1' holds %2, so its direction is %3, not %4.")
      .arg(column, kind, allowed, QString(given));
}

inline QString outOfOrder(const QString& column, const QString& direction) {
  return QStringLiteral(
             "the row is out of order in column '%1', which sortedOn declares %2. Sort the table, "
             "or take the "
             "column out of sortedOn.")
      .arg(column, direction);
}

}  // namespace kelvarin::sort_order_messages
