// Finds where whole records of a CSV text end, without looking at their fields: the one step of
// reading that has to be done in the order of the file.
//
// The grammar is that of CsvScanner.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/tables/csv/csv_dialect.h"

namespace kelvarin {

class CsvCutter {
 public:
  explicit CsvCutter(const CsvDialect& dialect) : m_dialect(dialect) {}

  // The size of the whole records and empty lines at the start of `bytes`, which begin with a
  // record; 0 where none is whole. A CR at the very end is left for the LF that may follow. Up to
  // 64 bytes after the text may be read.
  std::size_t wholeRecords(const char* bytes, std::size_t size) const;

 private:
  std::size_t afterLast(char lineEnd, const char* bytes, std::size_t size) const;
  std::size_t afterLastOutsideQuotes(char lineEnd, const char* bytes, std::size_t size) const;
  std::uint64_t bitsOfComments(const char* bytes) const;
  bool isFieldStart(const char* bytes, std::size_t at) const;
  static bool isRecordStart(const char* bytes, std::size_t at);

  CsvDialect m_dialect;
};

}  // namespace kelvarin
