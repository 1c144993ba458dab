#include "host/engine/row_queue.h"

#include <algorithm>
#include <cstring>

namespace kelvarin {

namespace {

constexpr std::size_t kBatchBytes = 256 * 1024;

// 0 where rows differ in size.
std::size_t rowSizeOf(const std::vector<MetaTypeColumn>& columns) {
  std::size_t size = 0;
  for (const MetaTypeColumn type : columns) {
    if (type != MetaTypeColumn::number && type != MetaTypeColumn::key) {
      return 0;
    }
    size += sizeOfValue(type, nullptr);
  }
  return size;
}

constexpr unsigned char kMissingValue[8] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};

}  // namespace

RowQueue::RowQueue(const ExecutionOptions& options)
    : m_memoryLimit(static_cast<std::size_t>(std::max(0LL, options.queueMemoryBytes))),
      m_spill(options.temporaryFolder) {}

bool RowQueue::push(const OneRow& row) {
  if (m_columns.empty()) {
    for (int i = 0; i < row.sz(); ++i) {
      m_columns.push_back(row.getMetaType(i));
    }
    m_rowSize = rowSizeOf(m_columns);
  }
  const std::size_t size = sizeOf(row);
  if (m_batches.empty() || m_batches.back().bytes == nullptr ||
      m_batches.back().capacity - m_batches.back().used < size) {
    if (!startBatch(size)) {
      return false;
    }
  }
  copyInto(m_batches.back(), row);
  ++m_rowCount;
  m_byteCount += static_cast<long long>(size);
  return true;
}

bool RowQueue::pop(unsigned char** values) {
  if (m_rowsLeftInReading == 0 && !startReading()) {
    return false;
  }
  unsigned char* place = m_reading.bytes.get() + m_readPosition;
  const unsigned char* start = place;
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    values[i] = place;
    place += sizeOfValue(m_columns[i], place);
  }
  m_readPosition += static_cast<std::size_t>(place - start);
  m_byteCount -= place - start;
  --m_rowsLeftInReading;
  --m_rowCount;
  return true;
}

RowsAhead RowQueue::rowsAhead() const {
  if (m_rowSize == 0 || m_readPosition == 0) {
    return {};
  }
  return {this, m_readPosition / m_rowSize - 1,
          static_cast<std::size_t>(m_rowsLeftInReading) + 1};
}

const double* RowQueue::numbers(int column, std::size_t first, std::size_t count,
                                double* room) const {
  return valuesAhead(column, first, count, room);
}

const std::uint32_t* RowQueue::keys(int column, std::size_t first, std::size_t count,
                                    std::uint32_t* room) const {
  return valuesAhead(column, first, count, room);
}

template <typename Value>
const Value* RowQueue::valuesAhead(int column, std::size_t first, std::size_t count,
                                   Value* room) const {
  const unsigned char* place = m_reading.bytes.get() + first * m_rowSize;
  for (int i = 0; i < column; ++i) {
    place += sizeOfValue(m_columns[static_cast<std::size_t>(i)], place);
  }
  for (std::size_t i = 0; i < count; ++i, place += m_rowSize) {
    std::memcpy(room + i, place, sizeof(Value));
  }
  return room;
}

void RowQueue::clear() {
  m_batches.clear();
  m_reading = {};
  m_spareBytes.reset();
  m_readPosition = 0;
  m_rowsLeftInReading = 0;
  m_bytesInMemory = 0;
  m_rowCount = 0;
  m_byteCount = 0;
  if (m_batchesOnDisk > 0) {
    m_batchesOnDisk = 0;
    m_spill.restart();
  }
}

std::size_t RowQueue::sizeOf(const OneRow& row) const {
  std::size_t size = 0;
  unsigned char* const* values = row.getAllColForRead();
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    size += sizeOfValue(m_columns[i], values[i]);
  }
  return size;
}

void RowQueue::copyInto(Batch& batch, const OneRow& row) const {
  unsigned char* place = batch.bytes.get() + batch.used;
  const unsigned char* start = place;
  unsigned char* const* values = row.getAllColForRead();
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    const std::size_t size = sizeOfValue(m_columns[i], values[i]);
    std::memcpy(place, values[i] == nullptr ? kMissingValue : values[i], size);
    place += size;
  }
  batch.used += static_cast<std::size_t>(place - start);
  ++batch.rowCount;
}

// Once rows are on disk, every full batch goes there, since those in memory are read before them.
bool RowQueue::startBatch(std::size_t rowSize) {
  if (!m_batches.empty() && m_batches.back().bytes != nullptr &&
      (m_bytesInMemory >= m_memoryLimit || m_batchesOnDisk > 0) && !spill(m_batches.back())) {
    return false;
  }
  m_batches.emplace_back();
  giveRoom(m_batches.back(), rowSize);
  return true;
}

void RowQueue::giveRoom(Batch& batch, std::size_t size) {
  batch.capacity = std::max(kBatchBytes, size);
  batch.bytes = batch.capacity == kBatchBytes && m_spareBytes != nullptr
                    ? std::move(m_spareBytes)
                    : std::make_unique_for_overwrite<unsigned char[]>(batch.capacity);
  m_bytesInMemory += batch.capacity;
}

bool RowQueue::spill(Batch& batch) {
  if (!m_spill.append(batch.bytes.get(), batch.used, &batch.fileOffset)) {
    return false;
  }
  ++m_batchesOnDisk;
  recycle(batch);
  return true;
}

bool RowQueue::startReading() {
  recycle(m_reading);
  m_reading = std::move(m_batches.front());
  m_batches.pop_front();
  m_readPosition = 0;
  m_rowsLeftInReading = m_reading.rowCount;
  if (m_reading.bytes != nullptr) {
    return true;
  }
  giveRoom(m_reading, m_reading.used);
  if (!m_spill.read(m_reading.fileOffset, m_reading.bytes.get(), m_reading.used)) {
    return false;
  }
  if (--m_batchesOnDisk == 0) {
    m_spill.restart();
  } else {
    m_spill.forget(m_reading.fileOffset, m_reading.used);
  }
  return true;
}

void RowQueue::recycle(Batch& batch) {
  if (batch.bytes == nullptr) {
    return;
  }
  m_bytesInMemory -= batch.capacity;
  if (batch.capacity == kBatchBytes) {
    m_spareBytes = std::move(batch.bytes);
  }
  batch.bytes.reset();
}

}  // namespace kelvarin
