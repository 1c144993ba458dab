// The start of a CSV file: byte order mark, header, and where the data begins.
#pragma once

#include <string>

#include <QStringList>

#include "host/tables/csv/csv_scanner.h"
#include "host/tables/text_input/text_input.h"

namespace kelvarin {

// More than any real table has: a header of so many columns is a mistaken separator, or a forgery.
inline constexpr std::size_t kMaxCsvColumns = 200'000;

struct CsvHead {
  QVector<QString> names;    // of the header, or col1, col2, ...
  long long dataOffset = 0;  // the first byte of the text after the header
  long long dataLine = 1;    // and its line
  std::string bytesRead;     // of the data, which the file does not yield again
  QStringList notes;         // what the user should know about the header
};

Result<CsvHead, QString> readCsvHead(TextInput& file, const CsvDialect& dialect);

// "col1" for 0.
QString generatedColumnName(qsizetype column);

}  // namespace kelvarin
