// Writes rows as CSV text into a buffer.
//
// Numbers take the shortest form that reads back to the same double; fields are quoted where they
// would otherwise be read back as something else. The buffer grows with the longest row only.
// Errors: the column of a field that needs a quote where there is none.
#pragma once

#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "host/contract/one_row.h"
#include "host/tables/csv/csv_dialect.h"

namespace kelvarin {

class CsvRowFormat {
 public:
  // The types of the columns of all rows.
  CsvRowFormat(const CsvDialect& dialect, std::vector<MetaTypeColumn> types);

  // Appends a line. The column that cannot be written, if any; the line is then incomplete.
  std::optional<int> appendRow(const OneRow& row);
  std::optional<int> appendNames(const OneRow& row);

  std::string_view text() const { return {m_buffer.get(), m_used}; }
  void clear() { m_used = 0; }

 private:
  // Capacity for `size` bytes and, after them, for the numbers and separators of a row.
  char* reserve(std::size_t size);
  // These write at `target` and return the end; null when the field needs a quote that does not
  // exist.
  char* appendValue(char* target, MetaTypeColumn type, const unsigned char* value);
  char* appendText(char* target, std::string_view text);
  char* appendQuoted(char* target, std::string_view text) const;
  char* appendNull(char* target) const;
  char* quotedIfNeeded(char* target, char* end) const;
  bool needsQuote(std::string_view text) const;
  void endLine(char* end);

  CsvDialect m_dialect;
  std::vector<MetaTypeColumn> m_types;
  bool m_isSpecial[256] = {};  // bytes that make a field need quotes
  bool m_needsNumberCheck =
      false;  // a printed number may be the null text or hold the separator or the quote
  std::unique_ptr<char[]> m_buffer;
  std::size_t m_capacity = 0;
  std::size_t m_used = 0;
  std::size_t m_fixedCapacity;  // for a row but its texts
};

}  // namespace kelvarin
