// One column of a table's sort order; a table lists them most significant first.
//
// Saved form: 5 bytes: the column as 32-bit little-endian integer, the direction code.
#pragma once

#include "base/export.h"

// 'A' and 'Z' are text ascending and descending, '0' and '9' number or key ascending and
// descending.
enum class SortType : unsigned char {
  textAscending = 'A',
  textDescending = 'Z',
  numberAscending = '0',
  numberDescending = '9'
};

class KELVARIN_CORE SortInfos {
 public:
  SortInfos() = default;
  SortInfos(int column, SortType type) : m_column(column), m_type(type) {}
  // Reads at `*position` and advances it by memSize().
  SortInfos(unsigned char* buffer, int* position);

  int column() const { return m_column; }
  SortType type() const { return m_type; }
  bool isDescending() const {
    return m_type == SortType::textDescending || m_type == SortType::numberDescending;
  }

  // Writes at `*position` and advances it by memSize().
  void write(unsigned char* buffer, int* position) const;
  static int memSize() { return 5; }

  friend bool operator==(const SortInfos&, const SortInfos&) = default;

 private:
  int m_column = -1;
  SortType m_type = SortType::textAscending;
};
