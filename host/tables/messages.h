// The texts about table files that a user reads.
#pragma once

#include <QString>

namespace kelvarin::table_messages {

// Values of a file may be long; a message shows the beginning.
inline QString shown(const QString& value) {
  constexpr qsizetype kLongest = 80;
  return value.size() <= kLongest ? value : value.left(kLongest) + QStringLiteral("...");
}

// Places

inline QString atLine(const QString& file, long long line) {
  return QStringLiteral("file '%1', line %2").arg(file).arg(line);
}

inline QString atRow(const QString& file, long long row) {
  return QStringLiteral("file '%1', row %2").arg(file).arg(row);
}

inline QString atPlace(const QString& place, const QString& what) {
  return QStringLiteral("%1: %2").arg(place, what);
}

// Any file

inline QString noFileGiven(const QString& action) {
  return QStringLiteral("%1: no file is given. Set the attribute 'file'.").arg(action);
}

inline QString cannotRead(const QString& file, const QString& reason) {
  return QStringLiteral("The file '%1' cannot be read: %2.").arg(file, reason);
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

inline QString duplicateColumn(const QString& file, const QString& column) {
  return QStringLiteral(
             "The file '%1' has several columns named '%2'. Give each column a name of its own.")
      .arg(file, column);
}

// CSV settings

inline QString badSeparator(const QString& separator) {
  return QStringLiteral(
             "The separator '%1' is not one ASCII character other than a line break. Write for "
             "instance ',' or ';', or "
             "'\\t' for TAB.")
      .arg(separator);
}

inline QString badQuote(const QString& quote) {
  return QStringLiteral(
             "The quote '%1' is neither empty (no quoting) nor one ASCII character other than a "
             "line break and the "
             "separator.")
      .arg(quote);
}

inline QString badNullText(const QString& text) {
  return QStringLiteral(
             "The nullText '%1' holds a separator, a quote or a line break, so that no field can "
             "be equal to it.")
      .arg(text);
}

inline QString badOnBadValue(const QString& text) {
  return QStringLiteral("onBadValue is '%1'. It takes 'abort' or 'null'.").arg(text);
}

inline QString badColumnMeta(const QString& column, const QString& meta) {
  return QStringLiteral(
             "The column '%1' is declared with the type '%2'. Types are F (number), K (key) and U "
             "(text).")
      .arg(column, meta);
}

inline QString declaredTwice(const QString& column) {
  return QStringLiteral("The column '%1' is declared twice.").arg(column);
}

// Reading CSV

inline QString noColumns(const QString& file) {
  return QStringLiteral("The file '%1' is empty: it has no columns.").arg(file);
}

inline QString declaredColumnAbsent(const QString& file, const QString& column,
                                    const QString& known) {
  return QStringLiteral("The file '%1' has no column '%2', which is declared. Its columns are: %3.")
      .arg(file, column, known);
}

inline QString tooManyDeclared(const QString& file, qsizetype declared, qsizetype present) {
  return QStringLiteral("%1 columns are declared for the file '%2', which has %3.")
      .arg(declared)
      .arg(file)
      .arg(present);
}

inline QString notUtf8() {
  return QStringLiteral("the text is not UTF-8. Convert the file to UTF-8 first");
}

inline QString inColumn(const QString& place, const QString& column) {
  return QStringLiteral("%1, column '%2'").arg(place, column);
}

inline QString tooManyFields(int fields, int columns, const QString& lastColumn,
                             const QString& value) {
  return QStringLiteral(
             "%1 fields where the file has %2 columns; the first one after column '%3' is '%4'. "
             "Quote fields that hold "
             "the separator.")
      .arg(fields)
      .arg(columns)
      .arg(lastColumn, shown(value));
}

inline QString tooFewFields(int fields, int columns, const QString& missingColumn,
                            const QString& value) {
  return QStringLiteral(
             "%1 fields where the file has %2 columns; column '%3' is missing, the last value is "
             "'%4'.")
      .arg(fields)
      .arg(columns)
      .arg(missingColumn, shown(value));
}

inline QString quoteNeverClosed() {
  return QStringLiteral("the quote opened here is never closed.");
}

inline QString recordTooLong(int mebibytes) {
  return QStringLiteral("the record that begins here has more than %1 MiB. Is a quote missing?")
      .arg(mebibytes);
}

inline QString badNumber(const QString& value) {
  return QStringLiteral(
             "'%1' is not a number. Correct it, declare the column as text (meta U), or set "
             "onBadValue to null.")
      .arg(shown(value));
}

inline QString badKey(const QString& value) {
  return QStringLiteral(
             "'%1' is not a key (0 to 4294967293). Correct it, declare the column with another "
             "type, or set "
             "onBadValue to null.")
      .arg(shown(value));
}

inline QString readAsNull(const QString& place, const QString& column, long long count) {
  if (count == 1) {
    return QStringLiteral(
               "%1: this value of column '%2' does not fit its type and was read as null.")
        .arg(place, column);
  }
  return QStringLiteral(
             "%1: %2 values of column '%3' do not fit its type and were read as null; this is the "
             "first.")
      .arg(place, QString::number(count), column);
}

// Writing CSV

inline QString needsQuote(const QString& file, long long row, const QString& column,
                          const QString& value) {
  return QStringLiteral(
             "The file '%1' cannot be written: row %2, column '%3': '%4' would be read back as "
             "something else without "
             "quotes. Set the attribute 'quote', or another separator.")
      .arg(file)
      .arg(row)
      .arg(column, shown(value));
}

// Parquet and Arrow

inline QString unsupportedType(const QString& file, const QString& column, const QString& type) {
  return QStringLiteral(
             "The file '%1' cannot be read: column '%2' has the type %3. Numbers, decimals, "
             "booleans, texts, dates, "
             "timestamps and dictionaries of them are read.")
      .arg(file, column, type);
}

inline QString integerTooLarge(const QString& value) {
  return QStringLiteral("the integer %1 cannot be held by a number column without loss.")
      .arg(value);
}

inline QString keyTooLarge(const QString& value) {
  return QStringLiteral("the key %1 is too large; the largest is 4294967293.").arg(value);
}

inline QString damaged(const QString& file, const QString& reason) {
  return QStringLiteral("The file '%1' cannot be read, it is damaged or of another format: %2")
      .arg(file, reason);
}

}  // namespace kelvarin::table_messages
