// What the log says about columns and values of tables in the types of Arrow.
//
// `source` is what the table is called: "file 'a.parquet'".
#pragma once

#include <QString>

namespace kelvarin::table_messages {

inline QString unsupportedType(const QString& source, const QString& column, const QString& type) {
  return QStringLiteral(
             "The %1 cannot be read: column '%2' has the type %3. Numbers, decimals, booleans, "
             "texts, dates, timestamps and dictionaries of them are read.")
      .arg(source, column, type);
}

inline QString waysAroundType() {
  return QStringLiteral(
      " To have it as JSON, set unreadable='text'; to leave it out, set unreadable='skip'.");
}

inline QString columnsLeftOut(const QString& source, qsizetype count, const QString& columns) {
  return (count == 1
              ? QStringLiteral("%1: a column is left out, since its type is not read: %2.")
              : QStringLiteral("%1: columns are left out, since their types are not read: %2."))
      .arg(source, columns);
}

inline QString nothingReadable(const QString& source) {
  return QStringLiteral("The %1 cannot be read: it has no column whose type is read.").arg(source);
}

inline QString cannotBeDeclared(const QString& source, const QString& column, const QString& type,
                                QChar declared, const QString& possible) {
  return QStringLiteral(
             "The %1 cannot be read: column '%2' has the type %3 and is declared with meta '%4'. "
             "It can be %5.")
      .arg(source, column, type, QString(declared), possible);
}

inline QString timestampForm(const QString& source, const QString& columns, const QString& example,
                             const QString& dateFormat, bool isUtc) {
  return QStringLiteral(
             "%1: the timestamps of %2 are texts like %3; dates are read from them with "
             "dateFormat='%4'%5.")
      .arg(source, columns, example, dateFormat,
           isUtc ? QStringLiteral(" and isUTC='1', the default") : QString());
}

inline QString finerThanMilliseconds(const QString& location, const QString& column,
                                     long long count) {
  return QStringLiteral(
             "%1: timestamps of column '%2' have digits below the millisecond (%3 in all, this is "
             "the first). The texts keep them; dates that are read from the texts do not.")
      .arg(location, column, QString::number(count));
}

inline QString numberNotHeld(const QString& value) {
  return QStringLiteral("%1 cannot be held by a number column without loss.").arg(value);
}

inline QString declareAsText(const QString& column) {
  return QStringLiteral(
             " Declare the column as text, <Column name='%1' meta='U'/>, or set "
             "onBadValue='null'.")
      .arg(column);
}

inline QString integerIsNoKey(const QString& value) {
  return QStringLiteral("%1 is not a key (0 to 4294967293).").arg(value);
}

inline QString declareAnotherType(const QString& column) {
  return QStringLiteral(
             " Declare the column with another type, <Column name='%1' meta='F'/> for numbers or "
             "meta='U' for texts, or set onBadValue='null'.")
      .arg(column);
}

// Columns and values that are written

inline QString badStoredType(const QString& column, const QString& type, const QString& types) {
  return QStringLiteral(
             "The column '%1' is declared with the type '%2'. Types of columns in the file are %3.")
      .arg(column, type, types);
}

inline QString storedColumnAbsent(const QString& column, const QString& type, const QString& hint) {
  return QStringLiteral("<Column name='%1' type='%2'/>: %3").arg(column, type, hint);
}

inline QString cannotBeStored(const QString& column, const QString& type, const QString& possible) {
  return QStringLiteral(
             "<Column name='%1' type='%2'/>: the values of this column cannot be written with this "
             "type. It can be %3.")
      .arg(column, type, possible);
}

inline QString valueNotStored(const QString& location, const QString& value, const QString& type) {
  return QStringLiteral(
             "%1: '%2' cannot be written with the type %3. Declare another type, or set "
             "onBadValue='null'.")
      .arg(location, value, type);
}

inline QString textNotStored(const QString& location, const QString& value, const QString& type,
                             const QString& example) {
  return QStringLiteral(
             "%1: '%2' cannot be written with the type %3, whose values are texts like %4. Declare "
             "another type, or set onBadValue='null'.")
      .arg(location, value, type, example);
}

inline QString writtenAsNull(const QString& location, const QString& column, long long count) {
  if (count == 1) {
    return QStringLiteral(
               "%1: this value of column '%2' does not fit its type and was written as null.")
        .arg(location, column);
  }
  return QStringLiteral(
             "%1: %2 values of column '%3' do not fit its type and were written as null; this is "
             "the first.")
      .arg(location, QString::number(count), column);
}

inline QString damaged(const QString& source, const QString& reason) {
  return QStringLiteral("The %1 cannot be read, it is damaged or of another format: %2")
      .arg(source, reason);
}

}  // namespace kelvarin::table_messages
