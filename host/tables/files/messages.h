// What the log says about table files of any format.
#pragma once

#include <QString>

namespace kelvarin::table_messages {

inline QString standardInput() {
  return QStringLiteral("standard input");
}

// What a table in a file is called.
inline QString fileSource(const QString& file) {
  return file == QLatin1String("-") ? standardInput() : QStringLiteral("file '%1'").arg(file);
}

// What the file is called that a table is written to.
inline QString fileTarget(const QString& file) {
  return file == QLatin1String("-") ? QStringLiteral("standard output")
                                    : QStringLiteral("file '%1'").arg(file);
}

inline QString atRow(const QString& source, long long row) {
  return QStringLiteral("%1, row %2").arg(source).arg(row);
}

inline QString atLocation(const QString& location, const QString& what) {
  return QStringLiteral("%1: %2").arg(location, what);
}

// Any file

inline QString noFileGiven(const QString& action) {
  return QStringLiteral("%1: no file is given. Set the attribute 'file'.").arg(action);
}

inline QString cannotRead(const QString& file, const QString& reason) {
  return QStringLiteral("The %1 cannot be read: %2.").arg(fileSource(file), reason);
}

inline QString cannotCreate(const QString& file, const QString& reason) {
  return QStringLiteral("The file '%1' cannot be created: %2. Nothing was written.")
      .arg(file, reason);
}

inline QString cannotWrite(const QString& file, const QString& reason) {
  return QStringLiteral("The file '%1' cannot be written: %2. What it held before is unchanged.")
      .arg(file, reason);
}

inline QString cannotWriteDirectly(const QString& file, const QString& reason) {
  return QStringLiteral("'%1' cannot be written: %2.").arg(file, reason);
}

inline QString isFolder() {
  return QStringLiteral("it is a folder");
}

inline QString standardOutput() {
  return QStringLiteral("standard output");
}

inline QString readerWentAway() {
  return QStringLiteral("the program that reads it has ended");
}

inline QString inputNotLinked(const QString& action) {
  return QStringLiteral("%1: nothing is linked to its input pin.").arg(action);
}

// Tables that are divided by the values of a column

inline QString badSplit(int split) {
  return QStringLiteral("split is '%1'. It takes 0 (one file) or 2 (by the value of splitVar).")
      .arg(split);
}

inline QString standardOutputNotSplit() {
  return QStringLiteral(
      "Rows that go to standard output cannot be split by value. Name a file, or set split='0'.");
}

inline QString splitColumnMissing(const QString& action, const QString& hint) {
  return QStringLiteral("%1, splitVar: %2").arg(action, hint);
}

inline QString splitNotSorted(const QString& action, const QString& column) {
  return QStringLiteral(
             "%1: the table is not sorted on '%2', by which it is split, so the files of all its "
             "values stay open to the end. There can be as many as the system lets a program have "
             "open; sort the table where there are more.")
      .arg(action, column);
}

inline QString splitValueReturns(const QString& file, const QString& value) {
  return QStringLiteral(
             "Writing to the file '%1': the value '%2' of the split column comes back, though the "
             "table is declared sorted on that column. Sort the table, or remove the declaration.")
      .arg(file, value);
}

inline QString splitNamesMeet(const QString& file, const QString& value,
                              const QString& otherValue) {
  return QStringLiteral(
             "Writing to the file '%1': two values of the split column, '%2' and '%3', give this "
             "same file name. Rename one of them.")
      .arg(file, value, otherValue);
}

inline QString duplicateColumn(const QString& source, const QString& column) {
  return QStringLiteral(
             "The %1 has several columns named '%2'. Give each column a name of its own.")
      .arg(source, column);
}

inline QString declaredColumnAbsent(const QString& source, const QString& column,
                                    const QString& known) {
  return QStringLiteral("The %1 has no column '%2', which is declared. Its columns are: %3.")
      .arg(source, column, known);
}

inline QString inColumn(const QString& location, const QString& column) {
  return QStringLiteral("%1, column '%2'").arg(location, column);
}

inline QString readAsNull(const QString& location, const QString& column, long long count) {
  if (count == 1) {
    return QStringLiteral(
               "%1: this value of column '%2' does not fit its type and was read as null.")
        .arg(location, column);
  }
  return QStringLiteral(
             "%1: %2 values of column '%3' do not fit its type and were read as null; this is the "
             "first.")
      .arg(location, QString::number(count), column);
}

}  // namespace kelvarin::table_messages
