// What programs read whose calls of the interface are wrong.
#pragma once

#include <QString>

namespace kelvarin::library_messages {

inline QString nullPointer(const QString& name) {
  return QStringLiteral("The argument '%1' is null.").arg(name);
}

inline QString wrongHandle(const QString& kind) {
  return QStringLiteral("There is no such %1: the handle is zero, closed, or of another kind.")
      .arg(kind);
}

inline QString noSize() {
  return QStringLiteral(
      "The size of a structure is not set: initialise options by their macro, and set 'size' of "
      "what receives a result.");
}

inline QString outOfRange(const QString& name, long long value) {
  return QStringLiteral("The value %1 of '%2' is out of its range.").arg(value).arg(name);
}

inline QString foreignStream() {
  return QStringLiteral("The stream is null, released, or not one of this library.");
}

inline QString noTableSchema() {
  return QStringLiteral("The schema is released, or not one of a table, which has columns.");
}

inline QString noColumns() {
  return QStringLiteral("No column is listed. Without a list all columns are read.");
}

inline QString rowNumberColumnExists(const QString& name) {
  return QStringLiteral("The table has a column '%1': choose another name for the row numbers.")
      .arg(name);
}

}  // namespace kelvarin::library_messages
