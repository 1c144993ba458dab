#include "columnar/reader/joined_batch.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "host/contract/late_texts.h"

namespace kelvarin {

namespace {

using Batches = std::span<const RowBatchPointer>;

std::shared_ptr<unsigned char[]> joinedValues(Batches batches, std::size_t column,
                                              std::size_t rows) {
  const std::size_t size = fixedSizeOf(batches.front()->column(column).type());
  auto values = std::make_shared_for_overwrite<unsigned char[]>(rows * size);
  unsigned char* to = values.get();
  for (const RowBatchPointer& batch : batches) {
    const std::size_t count = batch->rowCount() * size;
    std::memcpy(to, batch->column(column).value(0), count);
    to += count;
  }
  return values;
}

struct JoinedTexts {
  std::unique_ptr<unsigned char[]> bytes;
  std::unique_ptr<std::uint32_t[]> positions;
  std::vector<std::uint32_t> entries;
  std::vector<std::uint16_t> codes;
};

// One after the other, as long as there are few.
class JoinedDictionary {
 public:
  JoinedDictionary(Batches batches, std::size_t column, std::size_t rows, JoinedTexts& texts)
      : m_texts(texts) {
    constexpr std::size_t kMaxEntries = std::size_t{1} << 16;
    std::size_t entries = 0;
    for (const RowBatchPointer& batch : batches) {
      const BatchDictionary& part = batch->column(column).dictionary();
      entries += part.isThere() ? part.positions.size() : rows;
    }
    m_isThere = entries <= std::min(rows / 2, kMaxEntries);
  }

  // `begin` is where the texts of the part are.
  void append(const BatchDictionary& part, std::size_t rows, std::uint32_t begin) {
    if (!m_isThere) {
      return;
    }
    const auto firstCode = static_cast<std::uint16_t>(m_texts.entries.size());
    for (const std::uint32_t position : part.positions) {
      m_texts.entries.push_back(begin + position);
    }
    std::transform(
        part.codes, part.codes + rows, std::back_inserter(m_texts.codes),
        [firstCode](std::uint16_t code) { return static_cast<std::uint16_t>(firstCode + code); });
  }
  void set(BatchColumn& column) const {
    if (m_isThere) {
      column.setDictionary({m_texts.codes.data(), m_texts.entries});
    }
  }

 private:
  JoinedTexts& m_texts;
  bool m_isThere = false;
};

BatchColumn joinedTexts(Batches batches, std::size_t column, std::size_t rows) {
  std::size_t size = 0;
  for (const RowBatchPointer& batch : batches) {
    size += batch->column(column).textSize();
  }
  auto texts = std::make_shared<JoinedTexts>();
  texts->bytes = std::make_unique_for_overwrite<unsigned char[]>(size);
  texts->positions = std::make_unique_for_overwrite<std::uint32_t[]>(rows);
  JoinedDictionary dictionary(batches, column, rows, *texts);
  std::uint32_t* position = texts->positions.get();
  std::uint32_t begin = 0;
  for (const RowBatchPointer& batch : batches) {
    const BatchColumn& part = batch->column(column);
    std::memcpy(texts->bytes.get() + begin, part.textBytes(), part.textSize());
    for (std::size_t row = 0; row < batch->rowCount(); ++row) {
      *position++ = begin + part.textPositions()[row];
    }
    dictionary.append(part.dictionary(), batch->rowCount(), begin);
    begin += static_cast<std::uint32_t>(part.textSize());
  }
  BatchColumn all = BatchColumn::ofTexts(batches.front()->column(column).type(), texts,
                                         texts->bytes.get(), texts->positions.get(), size);
  dictionary.set(all);
  return all;
}

BatchColumn joinedColumn(Batches batches, std::size_t column, std::size_t rows) {
  switch (batches.front()->column(column).type()) {
    case MetaTypeColumn::number: {
      auto values = joinedValues(batches, column, rows);
      const auto* first = reinterpret_cast<const double*>(values.get());
      return BatchColumn::ofNumbers(std::move(values), first);
    }
    case MetaTypeColumn::key: {
      auto values = joinedValues(batches, column, rows);
      const auto* first = reinterpret_cast<const std::uint32_t*>(values.get());
      return BatchColumn::ofKeys(std::move(values), first);
    }
    default:
      return joinedTexts(batches, column, rows);
  }
}

}  // namespace

RowBatchPointer joined(Batches parts) {
  if (parts.size() == 1) {
    return parts.front();
  }
  std::vector<RowBatchPointer> batches;
  std::ranges::transform(parts, std::back_inserter(batches), withTexts);
  std::size_t rows = 0;
  for (const RowBatchPointer& batch : batches) {
    rows += batch->rowCount();
  }
  std::vector<BatchColumn> columns;
  columns.reserve(batches.front()->columnCount());
  for (std::size_t i = 0; i < batches.front()->columnCount(); ++i) {
    columns.push_back(joinedColumn(batches, i, rows));
  }
  return std::make_shared<RowBatch>(rows, std::move(columns));
}

}  // namespace kelvarin
