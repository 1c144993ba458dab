// What the log says about CSV files.
#pragma once

#include "host/tables/files/messages.h"

namespace kelvarin::table_messages {

// Values of a file may be long; a message shows the beginning.
inline QString shown(const QString& value) {
  constexpr qsizetype kLongest = 80;
  return value.size() <= kLongest ? value : value.left(kLongest) + QStringLiteral("...");
}

// Locations

inline QString atLine(const QString& file, long long line) {
  return QStringLiteral("%1, line %2").arg(fileSource(file)).arg(line);
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

inline QString badEncoding(const QString& encoding, const QString& known) {
  return QStringLiteral("The encoding '%1' is not known. Known are: %2, auto.")
      .arg(encoding, known);
}

inline QString badDecimal(const QString& decimal) {
  return QStringLiteral("decimal is '%1'. It takes '.' or ','.").arg(decimal);
}

inline QString badThousands(const QString& thousands, const QString& decimal) {
  return QStringLiteral(
             "thousands is '%1'. It takes one ASCII character that is no part of a number, such as "
             "'.', ',' or a blank, and not the one of decimal, '%2'; or nothing.")
      .arg(thousands, decimal);
}

inline QString badComment(const QString& comment) {
  return QStringLiteral(
             "comment is '%1'. It takes one ASCII character other than a line break, the separator "
             "and the quote; or nothing.")
      .arg(comment);
}

inline QString badRowRule(const QString& attribute, const QString& text, const QString& word) {
  return QStringLiteral("%1 is '%2'. It takes 'error' or '%3'.").arg(attribute, text, word);
}

inline QString badNullText(const QString& text) {
  return QStringLiteral(
             "The nullText '%1' holds a separator, a quote or a line break, so that no field can "
             "be equal to it.")
      .arg(text);
}

// Reading CSV

inline QString noColumns(const QString& file) {
  return QStringLiteral("The %1 is empty: it has no columns.").arg(fileSource(file));
}

// `quote` is empty where there is none.
inline QString dialectFound(const QString& separator, const QString& quote, const QString& encoding,
                            bool hasHeader) {
  return QStringLiteral("separator '%1', %2, encoding %3, %4.")
      .arg(separator,
           quote.isEmpty() ? QStringLiteral("no quote") : QStringLiteral("quote '%1'").arg(quote),
           encoding, hasHeader ? QStringLiteral("header") : QStringLiteral("no header"));
}

inline QString foreignFile(const QString& file, const QString& kind) {
  return QStringLiteral("The %1 is no CSV file in UTF-8: %2").arg(fileSource(file), kind);
}

inline QString utf16File() {
  return QStringLiteral("it begins like UTF-16 text. Set encoding='auto' or encoding='UTF-16'.");
}

inline QString utf32File() {
  return QStringLiteral("it begins like UTF-32 text. Convert it to UTF-8 first.");
}

inline QString compressedFile() {
  return QStringLiteral(
      "it is compressed by bzip2 or xz. Uncompress it first, or compress it by gzip or zstd.");
}

inline QString archiveFile() {
  return QStringLiteral(
      "it is a ZIP archive, as spreadsheet files are. Unpack it, or save the sheet as CSV.");
}

inline QString parquetFile() {
  return QStringLiteral("it is a Parquet file. Read it with ReadParquet.");
}

inline QString arrowFile() {
  return QStringLiteral("it is an Arrow file. Read it with ReadArrow.");
}

inline QString hasZeroBytes() {
  return QStringLiteral(
      "its first line has zero bytes, which no text has. If it is UTF-16, set encoding='auto'.");
}

inline QString tooManyColumns(std::size_t limit) {
  return QStringLiteral("the first line has more than %1 columns. Is the separator right?")
      .arg(limit);
}

inline QString unnamedColumns(int count, const QString& given) {
  return count == 1 ? QStringLiteral(
                          "the header has an empty name; the column is called '%1'. Does the line "
                          "end with a separator?")
                          .arg(given)
                    : QStringLiteral(
                          "the header has %1 empty names; the first such column is called '%2'.")
                          .arg(count)
                          .arg(given);
}

inline QString otherSeparator(const QString& separator) {
  return QStringLiteral("the first line is one field and has '%1' in it. Is separator='%1' meant?")
      .arg(separator);
}

inline QString fileColumnThere(const QString& source, const QString& column) {
  return QStringLiteral(
             "The %1 has a column '%2' already. Give the attribute fileColumn another name.")
      .arg(source, column);
}

inline QString otherColumns(const QString& source, const QString& columns, const QString& firstFile,
                            const QString& wanted) {
  return QStringLiteral(
             "The %1 has other columns than the first file, '%2': %3 instead of %4. Files that are "
             "read as one table have columns of the same names.")
      .arg(source, firstFile, columns, wanted);
}

inline QString noFileMatches(const QString& pattern) {
  return QStringLiteral("No file has a name like '%1'.").arg(pattern);
}

inline QString tooManyDeclared(const QString& file, qsizetype declared, qsizetype present) {
  return QStringLiteral("%1 columns are declared for the file '%2', which has %3.")
      .arg(declared)
      .arg(file)
      .arg(present);
}

inline QString notUtf8() {
  return QStringLiteral(
      "the text is not UTF-8. If the file is in Latin-1 or Windows-1252, set "
      "encoding='windows-1252'.");
}

inline QString notInEncoding(const QString& encoding) {
  return QStringLiteral("the text is not %1. Set another encoding, or get the file anew.")
      .arg(encoding);
}

// The fields of a record, of which the beginning is known when it is not whole.
inline QString fieldCount(int fields, bool isWhole) {
  return isWhole ? QString::number(fields) : QStringLiteral("At least %1").arg(fields);
}

inline QString tooManyFields(const QString& fields, int columns, const QString& lastColumn,
                             const QString& value) {
  return QStringLiteral(
             "%1 fields where the file has %2 columns; the first one after column '%3' is '%4'. "
             "Quote fields that hold "
             "the separator, or set long='ignore'.")
      .arg(fields, QString::number(columns), lastColumn, shown(value));
}

inline QString tooFewFields(int fields, int columns, const QString& missingColumn,
                            const QString& value) {
  return QStringLiteral(
             "%1 fields where the file has %2 columns; column '%3' is missing, the last value is "
             "'%4'. Complete the row, or set short='null'.")
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

inline QString missingWord(const QString& word) {
  return QStringLiteral(
             "'%1' is not a number. If it means a missing value, set nullText='%1'; else correct "
             "it, declare the column as text (meta U), or set onBadValue to null.")
      .arg(word);
}

inline QString hasLeadingZero() {
  return QStringLiteral("has a leading zero, which a number would lose");
}

inline QString hasTooManyDigits() {
  return QStringLiteral("has more digits than a number can hold");
}

inline QString numbersAreText(const QString& value, const QString& reason, const QString& column) {
  return QStringLiteral(
             "'%1' %2: the column is read as text. To read numbers all the same, declare it: "
             "<Column name='%3' meta='F'/>.")
      .arg(shown(value), reason, column);
}

inline QString peoplesNumbersAreText(const QString& value, const QString& decimal,
                                     const QString& thousands) {
  return QStringLiteral(
             "'%1' looks like a number, but numbers have '%2' before their decimals, %3 between "
             "thousands and no percent sign: the column is read as text. See the attributes "
             "decimal and thousands.")
      .arg(value, decimal,
           thousands.isEmpty() ? QStringLiteral("nothing") : QStringLiteral("'%1'").arg(thousands));
}

inline QString missingWordIsText(const QString& word) {
  return QStringLiteral(
             "'%1' stands among numbers: the column is read as text. If it means a missing value, "
             "set nullText='%1'.")
      .arg(word);
}

inline QString moreNumbersAreText(const QString& file, int columns) {
  return QStringLiteral("file '%1': %2 more columns that look like numbers are read as text.")
      .arg(file, QString::number(columns));
}

inline QString numberLosesDigits(const QString& value, const QString& reason,
                                 const QString& column) {
  return QStringLiteral(
             "'%1' %2, in a column of numbers by its first rows. Declare the column as text, "
             "<Column name='%3' meta='U'/>, or with meta='F' to read such values as numbers all "
             "the same, or set onBadValue to null.")
      .arg(shown(value), reason, column);
}

inline QString badKey(const QString& value) {
  return QStringLiteral(
             "'%1' is not a key (0 to 4294967293). Correct it, declare the column with another "
             "type, or set "
             "onBadValue to null.")
      .arg(shown(value));
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

}  // namespace kelvarin::table_messages
