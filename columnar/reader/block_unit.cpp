#include "columnar/reader/block_unit.h"

#include <algorithm>
#include <new>
#include <numeric>

#include "columnar/reader/joined_batch.h"

namespace kelvarin {

namespace {

// A unit ends with this number of rows, values, bytes, or blocks.
constexpr std::uint64_t kRowsInUnit = 2048;
constexpr std::uint64_t kValuesInUnit = 64 << 10;
constexpr std::size_t kBytesInUnit = 512 << 10;
constexpr std::size_t kItemsInUnit = 256;
// The texts of a column in one batch have positions of 32 bits.
constexpr std::size_t kMaxJoinedBytes = 1 << 30;

}  // namespace

namespace {

RowBatchPointer withRowNumbers(const RowBatch& batch, std::uint64_t firstRow) {
  auto numbers = std::make_shared_for_overwrite<double[]>(batch.rowCount());
  std::iota(numbers.get(), numbers.get() + batch.rowCount(), static_cast<double>(firstRow));
  std::vector<BatchColumn> columns = batch.columns();
  const double* first = numbers.get();
  columns.push_back(BatchColumn::ofNumbers(std::move(numbers), first));
  return std::make_shared<RowBatch>(batch.rowCount(), std::move(columns));
}

}  // namespace

// Collects the rows between two damages.
class BlockUnit::Rows {
 public:
  explicit Rows(std::vector<ReadEvent>& events) : m_events(events) {}

  void append(const ReadEvent& event) {
    const std::size_t bytes = event.batch->byteCount();
    if (!m_batches.empty() && m_byteCount + bytes > kMaxJoinedBytes) {
      end();
    }
    if (m_batches.empty()) {
      m_event = event;
    }
    m_event.lastRow = event.lastRow;
    m_event.blocks += m_batches.empty() ? 0 : event.blocks;
    m_batches.push_back(event.batch);
    m_byteCount += bytes;
  }
  void end() {
    if (!m_batches.empty()) {
      m_event.batch = joined(m_batches);
      m_events.push_back(std::move(m_event));
      m_batches.clear();
      m_byteCount = 0;
    }
  }

 private:
  std::vector<ReadEvent>& m_events;
  ReadEvent m_event;
  std::vector<RowBatchPointer> m_batches;
  std::size_t m_byteCount = 0;
};

void BlockUnit::add(Part part) {
  const FetchedBlock& block = part.block->block();
  m_firstRow = m_items.empty() ? block.firstRow : m_firstRow;
  if (m_part->targets != nullptr && m_items.empty()) {
    const auto before = static_cast<std::int64_t>(part.block->columns().rowsBefore(part.batch));
    m_expectedRow = std::max(part.block->firstRow() + before, std::int64_t{0});
  }
  m_rowCount += block.rowCount;
  m_valueCount += block.rowCount * block.chunks.size();
  m_byteCount += part.block->byteCount() / part.block->columns().batchCount();
  m_items.push_back({std::move(part), {}});
}

bool BlockUnit::isFull() const {
  return m_rowCount >= kRowsInUnit || m_valueCount >= kValuesInUnit ||
         m_byteCount >= kBytesInUnit || m_items.size() >= kItemsInUnit;
}

void BlockUnit::parse() {
  try {
    parseItems();
  } catch (const std::bad_alloc&) {
    m_events.push_back({.kind = ReadEvent::Kind::noMemory, .firstRow = m_firstRow});
  }
  m_items.clear();
  if (!m_events.empty()) {
    m_batch = m_events.front().batch;
  }
}

void BlockUnit::parseItems() {
  Rows rows(m_events);
  for (const Item& item : m_items) {
    const ReadEvent event = item.part.block ? eventOf(item.part) : item.damage;
    if (event.kind == ReadEvent::Kind::rows) {
      if (event.batch->rowCount() > 0) {
        rows.append(event);
      }
      continue;
    }
    rows.end();
    // The first part of a block stands for its damage.
    if (item.part.batch == 0) {
      m_events.push_back(event);
    }
    if (event.isLast()) {
      return;
    }
  }
  rows.end();
}

ReadEvent BlockUnit::eventOf(const Part& part) const {
  BlockDecoding& decoding = *part.block;
  const FetchedBlock& block = decoding.block();
  const ReadStatus status = decoding.decode();
  if (status == ReadStatus::truncated) {
    return {
        .kind = ReadEvent::Kind::truncated, .firstRow = block.firstRow, .lastRow = block.lastRow()};
  }
  if (status != ReadStatus::ok) {
    return {.kind = ReadEvent::Kind::corrupted,
            .firstRow = block.firstRow,
            .lastRow = block.lastRow(),
            .cause = status};
  }
  RowBatchPointer batch = decoding.columns().batch(part.batch);
  const std::uint64_t first = block.firstRow + decoding.columns().rowsBefore(part.batch);
  const std::uint64_t last = first + batch->rowCount() - 1;
  ReadEvent rows{.kind = ReadEvent::Kind::rows,
                 .firstRow = first,
                 .lastRow = last,
                 .batch = std::move(batch),
                 .blocks = part.batch == 0 ? 1u : 0u};
  keepRowsOfPart(rows);
  return rows;
}

void BlockUnit::keepRowsOfPart(ReadEvent& rows) const {
  const std::uint64_t begin = std::max(rows.firstRow, m_part->firstRow);
  const std::uint64_t end = std::max(begin, std::min(rows.lastRow + 1, m_part->endRow));
  if (end - begin < rows.batch->rowCount()) {
    const std::uint64_t before = std::min(begin - rows.firstRow, rows.batch->rowCount());
    rows.batch = rows.batch->slice(before, before + (end - begin));
    rows.firstRow = begin;
    rows.lastRow = end == begin ? begin : end - 1;
  }
  if (m_part->hasRowNumbers()) {
    rows.batch = withRowNumbers(*rows.batch, rows.firstRow);
  }
}

}  // namespace kelvarin
