// Some whole records of a CSV file, and where their fields are.
//
// Filled by CsvUnitReader; CsvIndexer sets the marks, and a unit reads it column by column. A
// record has a mark for its first byte and one after the end of each field; the mark before a
// quoted field carries a flag. Memory is kept from one filling to the next.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kelvarin {

// The bytes of a field as they stand in the file.
struct CsvField {
  std::string_view bytes;
  bool isQuoted;
};

// Appends a quoted field's text: without its quotes, doubled ones as one. What follows the closing
// quote belongs to the text.
void appendQuotedText(std::string_view field, char quote, std::string& text);

// LF, CR and CR LF are one line end each.
long long countLineEnds(const char* bytes, std::size_t size);

class CsvBlock {
 public:
  static constexpr std::uint32_t kQuotedMark = 0x80000000u;

  // Memory for `size` bytes; the first `kept` ones stay. Some bytes before and after may be read.
  void reserve(std::size_t size, std::size_t kept);
  std::size_t capacity() const { return m_capacity; }
  char* bytes() { return m_bytes.get() + kPadding; }
  const char* bytes() const { return m_bytes.get() + kPadding; }

  std::vector<std::uint32_t>& marks() { return m_marks; }
  // The marks hold `rowCount` records of `columnCount` fields.
  void setRows(long long rowCount, std::size_t columnCount);

  long long rowCount() const { return m_rowCount; }
  // How many lines of the block end before the row.
  long long linesBefore(long long row) const;
  CsvField field(long long row, std::size_t column) const {
    return fieldAt(marksOfRow(row) + column);
  }

  // For columns: the marks of row 0, and how many a row has.
  const std::uint32_t* marksOfRow(long long row) const {
    return m_marks.data() + static_cast<std::size_t>(row) * m_marksInRow;
  }
  std::size_t marksInRow() const { return m_marksInRow; }
  CsvField fieldAt(const std::uint32_t* mark) const {
    const std::uint32_t begin = mark[0] & ~kQuotedMark;
    const std::uint32_t end = (mark[1] & ~kQuotedMark) - 1;
    return {{bytes() + begin, end - begin}, (mark[0] & kQuotedMark) != 0};
  }

 private:
  static constexpr std::size_t kPadding = 64;

  std::unique_ptr<char[]> m_bytes;
  std::size_t m_capacity = 0;
  std::vector<std::uint32_t> m_marks;
  std::size_t m_marksInRow = 1;
  long long m_rowCount = 0;
};

}  // namespace kelvarin
