#include "actions/calculator/result_column.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "base/number_texts.h"
#include "expression/evaluator/key_cast.h"

namespace kelvarin {

namespace {

constexpr std::size_t kSizeOfNull = sizeof kNullTextLength;
constexpr std::size_t kMaxBytes = std::size_t{64} << 20;  // of texts, so that memory stays bounded

template <typename Value>
std::shared_ptr<Value[]> valuesOf(const RowBatch& batch, Value ofGaps) {
  auto values = std::make_shared_for_overwrite<Value[]>(batch.storedRows());
  if (batch.selection() != nullptr) {
    std::fill_n(values.get(), batch.storedRows(), ofGaps);
  }
  return values;
}

// The column and the values that it keeps alive.
template <typename Value, typename Make>
BatchColumn columnOf(std::shared_ptr<Value[]> values, Make make) {
  const Value* first = values.get();
  return make(std::move(values), first);
}

template <typename Word>
void copyEnds(std::string_view text, unsigned char* to) {
  const std::size_t last = text.size() - sizeof(Word);
  Word words[2];
  std::memcpy(&words[0], text.data(), sizeof(Word));
  std::memcpy(&words[1], text.data() + last, sizeof(Word));
  std::memcpy(to, &words[0], sizeof(Word));
  std::memcpy(to + last, &words[1], sizeof(Word));
}

// Most texts are short, and a call would cost more than the copy.
void copyText(std::string_view text, unsigned char* to) {
  const std::size_t size = text.size();
  if (size > 2 * sizeof(std::uint64_t)) {
    std::memcpy(to, text.data(), size);
  } else if (size >= sizeof(std::uint64_t)) {
    copyEnds<std::uint64_t>(text, to);
  } else if (size >= sizeof(std::uint32_t)) {
    copyEnds<std::uint32_t>(text, to);
  } else {
    for (std::size_t i = 0; i < size; ++i) {
      to[i] = static_cast<unsigned char>(text[i]);
    }
  }
}

}  // namespace

ResultColumn::ResultColumn(MetaTypeColumn type, const RowBatch& batch) : m_type(type) {
  if (type == MetaTypeColumn::number) {
    m_numbers = valuesOf(batch, kNullNumber);
  } else if (type == MetaTypeColumn::key) {
    m_keys = valuesOf(batch, kNullKey);
  } else {
    constexpr std::size_t kFirstBytesOfText = 16;
    m_positions = valuesOf(batch, kPositionOfNull);
    reserve(kSizeOfNull + batch.rowCount() * kFirstBytesOfText);
    std::memcpy(m_bytes.get(), &kNullTextLength, kSizeOfNull);
    m_size = kSizeOfNull;
  }
}

void ResultColumn::store(BatchEvaluation& rows, int output, const KeyCast& keyCast) {
  m_sizeBefore = m_size;
  if (m_numbers != nullptr) {
    storeNumbers(rows, output);
  } else if (m_keys != nullptr) {
    storeKeys(rows, output, keyCast);
  } else if (rows.yieldsText(output)) {
    const ColumnText* texts = rows.texts(output);  // may leave fewer rows
    storeTexts(rows, 0, texts, rows.rowCount());
  } else {
    storePrintedNumbers(rows, output);
  }
}

void ResultColumn::storeNumbers(BatchEvaluation& rows, int output) {
  if (rows.isContiguous()) {
    rows.evaluateInto(output, m_numbers.get() + rows.storedRow(0));
    return;
  }
  const double* numbers = rows.numbers(output);
  for (std::size_t i = 0; i < rows.rowCount(); ++i) {
    m_numbers[rows.storedRow(i)] = numbers[i];
  }
}

void ResultColumn::storeKeys(BatchEvaluation& rows, int output, const KeyCast& keyCast) {
  const double* numbers = rows.numbers(output);
  for (std::size_t i = 0; i < rows.rowCount(); ++i) {
    if (!castToKey(numbers[i], keyCast, m_keys[rows.storedRow(i)])) [[unlikely]] {
      rows.keepFirst(i);
    }
  }
}

void ResultColumn::storePrintedNumbers(BatchEvaluation& rows, int output) {
  const double* numbers = rows.numbers(output);
  std::array<NumberText, kNumbersPrinted> printed;
  std::array<ColumnText, kNumbersPrinted> texts;
  for (std::size_t begin = 0; begin < rows.rowCount(); begin += kNumbersPrinted) {
    const std::size_t count = std::min(kNumbersPrinted, rows.rowCount() - begin);
    printNumbers(numbers + begin, count, printed.data());
    for (std::size_t i = 0; i < count; ++i) {
      texts[i] = printed[i].size == 0 ? ColumnText() : ColumnText(printed[i].text());
    }
    storeTexts(rows, begin, texts.data(), count);
  }
}

// For the rows from `begin` on.
void ResultColumn::storeTexts(BatchEvaluation& rows, std::size_t begin, const ColumnText* texts,
                              std::size_t count) {
  const std::size_t stored = reserveFor(texts, count);
  for (std::size_t i = 0; i < stored; ++i) {
    const std::size_t row = rows.storedRow(begin + i);
    if (texts[i].isNull()) {
      m_positions[row] = kPositionOfNull;
    } else {
      append(row, texts[i].view());
    }
  }
  if (stored < count) [[unlikely]] {
    rows.keepFirst(begin + stored);
  }
}

// Returns how many of the texts the column can hold.
std::size_t ResultColumn::reserveFor(const ColumnText* texts, std::size_t count) {
  std::size_t end = m_size;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t next = end + sizeof kNullTextLength + texts[i].view().size();
    if (next > kMaxBytes) [[unlikely]] {
      count = i;
      break;
    }
    end = next;
  }
  if (end > m_capacity) {
    reserve(2 * end);
  }
  return count;
}

void ResultColumn::append(std::size_t storedRow, std::string_view text) {
  const auto length = static_cast<std::uint32_t>(text.size());
  unsigned char* bytes = m_bytes.get() + m_size;
  m_positions[storedRow] = static_cast<std::uint32_t>(m_size);
  std::memcpy(bytes, &length, sizeof length);
  copyText(text, bytes + sizeof length);
  m_size += sizeof length + text.size();
}

// Only texts take memory that would be left behind.
void ResultColumn::dropRowsBehind(const BatchEvaluation& rows) {
  if (m_positions == nullptr) {
    return;
  }
  m_size = m_sizeBefore;
  for (std::size_t i = rows.rowCount(); i-- > 0;) {
    const std::uint32_t position = m_positions[rows.storedRow(i)];
    if (position != kPositionOfNull) {
      const unsigned char* bytes = m_bytes.get() + position;
      m_size = position + sizeOfValue(m_type, bytes);
      return;
    }
  }
}

void ResultColumn::reserve(std::size_t size) {
  auto larger = std::make_shared_for_overwrite<unsigned char[]>(size);
  if (m_size > 0) {
    std::memcpy(larger.get(), m_bytes.get(), m_size);
  }
  m_bytes = std::move(larger);
  m_capacity = size;
}

BatchColumn ResultColumn::take() {
  if (m_numbers != nullptr) {
    return columnOf(std::move(m_numbers), BatchColumn::ofNumbers);
  }
  if (m_keys != nullptr) {
    return columnOf(std::move(m_keys), BatchColumn::ofKeys);
  }
  struct Texts {
    std::shared_ptr<unsigned char[]> bytes;
    std::shared_ptr<std::uint32_t[]> positions;
  };
  auto texts = std::make_shared<const Texts>(Texts{std::move(m_bytes), std::move(m_positions)});
  const unsigned char* bytes = texts->bytes.get();
  const std::uint32_t* positions = texts->positions.get();
  return BatchColumn::ofTexts(m_type, std::move(texts), bytes, positions, m_size);
}

}  // namespace kelvarin
