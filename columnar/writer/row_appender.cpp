#include "columnar/writer/row_appender.h"

#include <cstring>

namespace kelvarin {

namespace {

template <typename Value>
void copyValues(const RowBatch& batch, const Value* from, std::size_t begin, std::size_t end,
                void* values) {
  if (batch.selection() == nullptr) {
    std::memcpy(values, from + begin, (end - begin) * sizeof(Value));
    return;
  }
  auto* to = static_cast<unsigned char*>(values);
  forEachRow(batch, begin, end, [&](std::size_t, std::size_t storedRow) {
    std::memcpy(to, from + storedRow, sizeof(Value));
    to += sizeof(Value);
  });
}

// Texts up to this size are copied as so many bytes, in one step, so both ends need a margin.
constexpr std::size_t kCopied = 64;
constexpr std::size_t kCopiedOfShort = 16;
// Texts mostly follow one another in a batch that comes from memory.
constexpr std::size_t kPrefetched = 4096;

void copyText(const unsigned char* from, std::size_t size, const unsigned char* end,
              unsigned char* to) {
  if (size > kCopied || static_cast<std::size_t>(end - from) < kCopied) [[unlikely]] {
    std::memcpy(to, from, size);
  } else if (size > kCopiedOfShort) {
    std::memcpy(to, from, kCopied);
  } else {
    std::memcpy(to, from, kCopiedOfShort);
  }
}

}  // namespace

void RowAppender::addTarget(const GelColumn& column, ColumnValues& values) {
  switch (column.type) {
    case GelType::key:
      m_keys.push_back({column.inputPosition, values.keys.get()});
      return;
    case GelType::number:
      m_numbers.push_back({column.inputPosition, values.numbers.get()});
      return;
    case GelType::text:
      values.bytes.clear();
      m_texts.push_back({column.inputPosition, values.keys.get(), &values.bytes});
  }
}

bool RowAppender::append(const RowBatch& batch, std::size_t begin, std::size_t end) {
  for (const KeyTarget& target : m_keys) {
    copyValues(batch, batch.column(target.position).keys(), begin, end, target.keys + m_row);
  }
  for (const NumberTarget& target : m_numbers) {
    copyValues(batch, batch.column(target.position).numbers(), begin, end, target.numbers + m_row);
  }
  for (const TextTarget& target : m_texts) {
    if (!appendTexts(target, batch, begin, end)) {
      return false;
    }
  }
  m_row += static_cast<std::uint32_t>(end - begin);
  return true;
}

bool RowAppender::appendTexts(const TextTarget& target, const RowBatch& batch, std::size_t begin,
                              std::size_t end) const {
  const BatchColumn& column = batch.column(target.position);
  std::uint32_t* length = target.lengths + m_row;
  std::uint64_t size = 0;
  forEachRow(batch, begin, end, [&](std::size_t, std::size_t storedRow) {
    const unsigned char* text = column.text(storedRow);
    __builtin_prefetch(text + kPrefetched);
    *length = lengthFromBytes(text);
    size += byteCountOf(*length++);
  });
  const std::size_t sizeBefore = target.bytes->size();
  const std::uint64_t lengthsSize = (m_row + (end - begin)) * sizeof(std::uint32_t);
  if (sizeBefore + size + lengthsSize > kMaxTextsSize) {
    return false;
  }
  unsigned char* to = target.bytes->append(size + kCopied);
  const unsigned char* endOfTexts = column.textBytes() + column.textSize();
  length = target.lengths + m_row;
  forEachRow(batch, begin, end, [&](std::size_t, std::size_t storedRow) {
    const unsigned char* from = column.text(storedRow) + sizeof(std::uint32_t);
    const std::size_t bytes = byteCountOf(*length++);
    copyText(from, bytes, endOfTexts, to);
    to += bytes;
  });
  target.bytes->resize(sizeBefore + size);
  return true;
}

}  // namespace kelvarin
