#include "host/tables/csv/csv_cutter.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "host/tables/csv/csv_bytes.h"

namespace kelvarin {

std::size_t CsvCutter::wholeRecords(const char* bytes, std::size_t size) const {
  if (const std::size_t end = afterLast('\n', bytes, size); end > 0 || size == 0) {
    return end;
  }
  // No line ends in LF, so that no CR is followed by one.
  return afterLast('\r', bytes, size - 1);
}

std::size_t CsvCutter::afterLast(char lineEnd, const char* bytes, std::size_t size) const {
  if (m_dialect.hasQuote && std::memchr(bytes, m_dialect.quote, size) != nullptr) {
    return afterLastOutsideQuotes(lineEnd, bytes, size);
  }
  const void* last = ::memrchr(bytes, lineEnd, size);
  return last == nullptr ? 0 : static_cast<std::size_t>(static_cast<const char*>(last) - bytes) + 1;
}

std::size_t CsvCutter::afterLastOutsideQuotes(char lineEnd, const char* bytes,
                                              std::size_t size) const {
  constexpr std::size_t kNowhere = SIZE_MAX;
  const bool hasComments = m_dialect.hasComments;
  std::size_t end = 0;
  bool isInQuotes = false;
  bool isInComment = false;
  std::size_t closedAt = kNowhere;
  for (std::size_t start = 0; start < size; start += kCsvStep) {
    std::uint64_t present = ~std::uint64_t{0};
    if (size - start < kCsvStep) {
      present = (std::uint64_t{1} << (size - start)) - 1;
    }
    const std::uint64_t quotes = bitsOfByte(m_dialect.quote, bytes + start) & present;
    std::uint64_t left = quotes | (bitsOfByte(lineEnd, bytes + start) & present);
    if (hasComments) [[unlikely]] {
      left |= bitsOfComments(bytes + start) & present;
    } else if (quotes == 0) {
      end = isInQuotes || left == 0 ? end : start + static_cast<std::size_t>(std::bit_width(left));
      continue;
    }
    for (; left != 0; left &= left - 1) {
      const std::size_t at = start + static_cast<std::size_t>(std::countr_zero(left));
      if (hasComments) [[unlikely]] {
        const char c = bytes[at];
        const bool isLineEnd = c == '\n' || c == '\r';
        if (isInComment || c == m_dialect.comment) {
          isInComment = isInComment ? !isLineEnd : !isInQuotes && isRecordStart(bytes, at);
        }
        const bool isOther = isLineEnd ? c != lineEnd : isInComment || c == m_dialect.comment;
        if (isOther) {
          continue;
        }
      }
      if (bytes[at] != m_dialect.quote) {
        end = isInQuotes ? end : at + 1;
      } else if (isInQuotes) {
        isInQuotes = false;
        closedAt = at;
      } else {
        // A doubled quote closes and opens again.
        isInQuotes = closedAt + 1 == at || isFieldStart(bytes, at);
      }
    }
  }
  return end;
}

// Where a comment may begin or end.
std::uint64_t CsvCutter::bitsOfComments(const char* bytes) const {
  return bitsOfByte(m_dialect.comment, bytes) | bitsOfByte('\n', bytes) | bitsOfByte('\r', bytes);
}

bool CsvCutter::isFieldStart(const char* bytes, std::size_t at) const {
  return isRecordStart(bytes, at) || bytes[at - 1] == m_dialect.separator;
}

bool CsvCutter::isRecordStart(const char* bytes, std::size_t at) {
  return at == 0 || bytes[at - 1] == '\n' || bytes[at - 1] == '\r';
}

}  // namespace kelvarin
