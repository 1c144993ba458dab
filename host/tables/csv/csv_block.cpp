#include "host/tables/csv/csv_block.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "host/tables/csv/csv_bytes.h"

namespace kelvarin {

void appendQuotedText(std::string_view field, char quote, std::string& text) {
  std::string_view rest = field.substr(1);
  for (std::size_t at; (at = rest.find(quote)) != rest.npos;) {
    const bool isDoubled = at + 1 < rest.size() && rest[at + 1] == quote;
    text += rest.substr(0, at + (isDoubled ? 1 : 0));
    rest.remove_prefix(at + (isDoubled ? 2 : 1));
    if (!isDoubled) {
      break;
    }
  }
  text += rest;
}

long long countLineEnds(const char* bytes, std::size_t size) {
  long long count = 0;
  const char* end = bytes + size;
  const char* at = bytes;
  for (; static_cast<std::size_t>(end - at) >= kCsvStep; at += kCsvStep) {
    count += std::popcount(bitsOfByte('\n', at));
  }
  count += std::count(at, end, '\n');
  at = bytes;
  while (at < end && (at = static_cast<const char*>(
                          std::memchr(at, '\r', static_cast<std::size_t>(end - at)))) != nullptr) {
    ++at;
    count += at < end && *at == '\n' ? 0 : 1;
  }
  return count;
}

void CsvBlock::reserve(std::size_t size, std::size_t kept) {
  if (size <= m_capacity) {
    return;
  }
  std::unique_ptr<char[]> larger(new char[size + 2 * kPadding]);
  std::memset(larger.get(), 0, kPadding);
  std::memset(larger.get() + kPadding + size, 0, kPadding);
  if (kept > 0) {
    std::memcpy(larger.get() + kPadding, bytes(), kept);
  }
  m_bytes = std::move(larger);
  m_capacity = size;
}

void CsvBlock::setRows(long long rowCount, std::size_t columnCount) {
  m_rowCount = rowCount;
  m_marksInRow = columnCount + 1;
}

long long CsvBlock::linesBefore(long long row) const {
  const std::uint32_t begin = marksOfRow(row)[0] & ~kQuotedMark;
  return countLineEnds(bytes(), begin);
}

}  // namespace kelvarin
