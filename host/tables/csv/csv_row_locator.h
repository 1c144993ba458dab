// Where things stand in a CSV file, found by reading it a second time after an error.
//
// A pipe cannot be read a second time; its locations are row numbers.
// Threads: any.
#pragma once

#include <optional>

#include "host/tables/csv/csv_head.h"

namespace kelvarin {

class CsvRowLocator {
 public:
  // `head` describes where the data of `file` begins.
  CsvRowLocator(const TextInput& file, const CsvDialect& dialect, const CsvHead& head);

  // "file 'a.csv', line 17" for a row of data, counted from 0.
  QString locationOfRow(long long row) const;

 private:
  std::optional<long long> lineOfRow(long long row) const;

  QString m_path;
  TextEncoding m_encoding;
  bool m_canOpenAgain;
  CsvDialect m_dialect;
  bool m_hasOneColumn;
  long long m_dataOffset;
  long long m_dataLine;
};

}  // namespace kelvarin
