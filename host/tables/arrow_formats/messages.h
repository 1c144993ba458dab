// What the log says about Parquet and Arrow files.
#pragma once

#include <QString>

namespace kelvarin::table_messages {

// Parquet and Arrow

inline QString unsupportedType(const QString& file, const QString& column, const QString& type) {
  return QStringLiteral(
             "The file '%1' cannot be read: column '%2' has the type %3. Numbers, decimals, "
             "booleans, texts, dates, "
             "timestamps and dictionaries of them are read.")
      .arg(file, column, type);
}

inline QString cannotBeDeclared(const QString& file, const QString& column, const QString& type,
                                QChar declared, const QString& possible) {
  return QStringLiteral(
             "The file '%1' cannot be read: column '%2' has the type %3 and is declared with meta "
             "'%4'. It can be %5.")
      .arg(file, column, type, QString(declared), possible);
}

inline QString timestampForm(const QString& file, const QString& columns, const QString& example,
                             const QString& dateFormat, bool isUtc) {
  return QStringLiteral(
             "file '%1': the timestamps of %2 are texts like %3; dates are read from them with "
             "dateFormat='%4'%5.")
      .arg(file, columns, example, dateFormat,
           isUtc ? QStringLiteral(" and isUTC='1', the default") : QString());
}

inline QString finerThanMilliseconds(const QString& location, const QString& column,
                                     long long count) {
  return QStringLiteral(
             "%1: timestamps of column '%2' have digits below the millisecond (%3 in all, this is "
             "the first). The texts keep them; dates that are read from the texts do not.")
      .arg(location, column, QString::number(count));
}

inline QString numberNotHeld(const QString& value, const QString& column) {
  return QStringLiteral(
             "%1 cannot be held by a number column without loss. Declare the column as text, "
             "<Column name='%2' meta='U'/>, or set onBadValue='null'.")
      .arg(value, column);
}

inline QString integerIsNoKey(const QString& value, const QString& column) {
  return QStringLiteral(
             "%1 is not a key (0 to 4294967293). Declare the column with another type, <Column "
             "name='%2' meta='F'/> for numbers or meta='U' for texts, or set onBadValue='null'.")
      .arg(value, column);
}

inline QString damaged(const QString& file, const QString& reason) {
  return QStringLiteral("The file '%1' cannot be read, it is damaged or of another format: %2")
      .arg(file, reason);
}

}  // namespace kelvarin::table_messages
