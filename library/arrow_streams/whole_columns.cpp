#include "library/arrow_streams/whole_columns.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

#include "library/arrow_streams/exported_texts.h"
#include "library/arrow_streams/large_pages.h"
#include "library/arrow_streams/valid_texts.h"

namespace kelvarin {

namespace {

// Rows may share their texts, and then take much more than these do.
constexpr std::size_t kMaxTimesCopied = 8;

std::size_t valueSizeOf(MetaTypeColumn type, TextFormat texts) {
  const std::size_t fixed = fixedSizeOf(type);
  if (fixed != 0) {
    return fixed;
  }
  return texts == TextFormat::views ? sizeof(TextView) : 0;
}

template <typename Value>
void storeValues(const RowBatch& batch, const Value* values, unsigned char* target,
                 NullBits& nulls) {
  auto* rows = reinterpret_cast<Value*>(target);
  if (batch.selection() != nullptr) {
    forEachRow(batch, 0, batch.rowCount(),
               [&](std::size_t row, std::size_t stored) { rows[row] = values[stored]; });
  } else if (rows != values) {  // they may overlap, see WholeTable::take()
    std::memmove(rows, values, batch.rowCount() * sizeof(Value));
  }
  addNulls(rows, batch.rowCount(), nulls);
}

// A text in memory that can be read up to `end`, behind which there is a margin in `to`.
void copyText(const unsigned char* from, std::size_t size, const unsigned char* end,
              unsigned char* to) {
  constexpr std::size_t kStep = TextPieces::kMargin;
  if (size > 8 * kStep || static_cast<std::size_t>(end - from) < size + kStep) {
    std::memcpy(to, from, size);
    return;
  }
  for (std::size_t i = 0; i < size; i += kStep) {
    std::memcpy(to + i, from + i, kStep);
  }
}

void storeViews(const RowBatch& batch, const BatchColumn& column, std::size_t size,
                std::size_t mostRows, TextPieces& pieces, unsigned char* target, NullBits& nulls) {
  const std::size_t batches = mostRows / std::max<std::size_t>(batch.rowCount(), 1);
  TextPieces::Piece piece = pieces.take(size, size * batches);
  const unsigned char* const end = column.textBytes() + column.textSize();
  TextViewer viewer(column, [&](const unsigned char* text, std::uint32_t length) {
    const TextLocation at{piece.index, static_cast<std::uint32_t>(piece.used)};
    copyText(text, length, end, piece.end());
    piece.used += length;
    return at;
  });
  viewer.viewRows(batch, column, reinterpret_cast<TextView*>(target), nulls);
  pieces.giveBack(piece);
}

void packRows(const RowBatch& batch, const BatchColumn& column, std::size_t size,
              WrittenRows::Column& made) {
  made.packed.count = batch.rowCount();
  made.packed.ends = SpareBytes(batch.rowCount() * sizeof(std::uint32_t));
  made.packed.bytes = SpareBytes(size);
  packTexts(batch, column, reinterpret_cast<char*>(made.packed.bytes.get()),
            reinterpret_cast<std::uint32_t*>(made.packed.ends.get()), made.nulls);
}

}  // namespace

WholeColumns::WholeColumns(std::size_t mostRows, TextFormat texts)
    : m_mostRows(mostRows), m_texts(texts) {}

bool WholeColumns::begin(const TableColumns& columns) {
  std::vector<Column> made;
  try {
    for (const MetaTypeColumn type : columns.types) {
      Column& column = made.emplace_back();
      column.type = type;
      column.valueSize = valueSizeOf(type, m_texts);
      if (column.valueSize > 0) {
        column.values = largeBytes(m_mostRows * column.valueSize);
      }
      if (fixedSizeOf(type) == 0 && column.valueSize > 0) {
        column.pieces = std::make_unique<TextPieces>();
      }
    }
  } catch (const std::bad_alloc&) {
    return false;
  }
  m_columns = std::move(made);
  m_hasBegun.store(true, std::memory_order_release);
  return true;
}

bool WholeColumns::hasTarget(std::int64_t firstRow, std::size_t rows) const {
  if (firstRow < 0 || !m_hasBegun.load(std::memory_order_acquire)) {
    return false;
  }
  const auto first = static_cast<std::size_t>(firstRow);
  return first <= m_mostRows && rows <= m_mostRows - first;
}

unsigned char* WholeColumns::at(std::size_t column, std::size_t size, std::int64_t first,
                                std::size_t rows) {
  if (!hasTarget(first, rows) || column >= m_columns.size() ||
      fixedSizeOf(m_columns[column].type) != size) {
    return nullptr;
  }
  return m_columns[column].values.get() + static_cast<std::size_t>(first) * size;
}

std::unique_ptr<EncodedBatch> WholeColumns::encode(const RowBatch& batch) const {
  return encodeAt(batch, -1);
}

std::unique_ptr<EncodedBatch> WholeColumns::encodeAt(const RowBatch& batch,
                                                     std::int64_t firstRow) const {
  if (!hasTarget(firstRow, batch.rowCount())) {
    return nullptr;
  }
  auto written = std::make_unique<WrittenRows>();
  written->first = static_cast<std::size_t>(firstRow);
  written->count = batch.rowCount();
  written->columns.resize(batch.columnCount());
  for (std::size_t i = 0; i < batch.columnCount(); ++i) {
    if (!store(batch, i, *written)) {
      return nullptr;
    }
  }
  return written;
}

bool WholeColumns::store(const RowBatch& batch, std::size_t index, WrittenRows& written) const {
  const Column& whole = m_columns[index];
  WrittenRows::Column& made = written.columns[index];
  unsigned char* const rows = whole.values.get() + written.first * whole.valueSize;
  const BatchColumn& column = batch.column(index);
  switch (whole.type) {
    case MetaTypeColumn::number:
      storeValues(batch, column.numbers(), rows, made.nulls);
      return true;
    case MetaTypeColumn::key:
      storeValues(batch, column.keys(), rows, made.nulls);
      return true;
    default:
      break;
  }
  const BatchColumn texts = withValidTexts(batch, column);
  const bool isByEntries = whole.pieces != nullptr && isViewedByEntries(batch, texts);
  const std::size_t size = isByEntries ? texts.textSize() : sizeOfTexts(batch, texts);
  if (size > INT_MAX || (whole.pieces != nullptr && size > kMaxTimesCopied * texts.textSize())) {
    return false;
  }
  if (whole.pieces != nullptr) {
    storeViews(batch, texts, size, m_mostRows, *whole.pieces, rows, made.nulls);
  } else {
    packRows(batch, texts, size, made);
  }
  return true;
}

}  // namespace kelvarin
