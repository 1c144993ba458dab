#include "host/engine/row_queue.h"

#include <algorithm>

namespace kelvarin {

namespace {

// Where readers keep up, rows are passed on in the nearer caches of the processor; where they lag,
// batches grow up to what is written to a disk at one time.
constexpr std::size_t kSmallestBatch = 32 * 1024;
constexpr std::size_t kLargestBatch = 256 * 1024;

}  // namespace

RowQueue::RowQueue(const ExecutionOptions& options)
    : m_memoryLimit(static_cast<std::size_t>(std::max(0LL, options.queueMemoryBytes))),
      m_spill(options.temporaryFolder) {}

bool RowQueue::push(const OneRow& row) {
  if (m_readerCount == 0) {
    return true;
  }
  if (!m_layout) [[unlikely]] {
    m_layout.emplace(row);
  }
  const std::size_t size = m_layout->sizeOf(row);
  if (m_batches.empty() || !m_batches.back().rows.hasSpaceFor(size)) {
    if (!startBatch(size)) {
      return false;
    }
  }
  Batch& batch = m_batches.back();
  batch.rows.append(row, size);
  m_bytesWaiting += batch.readersToCome > 0 ? static_cast<long long>(size) : 0;
  return true;
}

// Once rows are on disk, every full batch goes there, since those in memory are read before them.
bool RowQueue::startBatch(std::size_t rowSize) {
  const bool isFull = m_bytesInMemory >= m_memoryLimit || m_batchesOnDisk > 0;
  if (!m_batches.empty() && m_batches.back().readersToCome > 0 && isFull &&
      !spill(m_batches.back())) {
    return false;
  }
  const std::size_t capacity = std::max(nextCapacity(), rowSize);
  m_batches.push_back({QueueBatch(*m_layout, takeMemory(capacity), capacity), m_readerCount});
  return true;
}

std::size_t RowQueue::nextCapacity() const {
  if (m_batches.empty() || m_batches.back().readersToCome == 0) {
    return kSmallestBatch;
  }
  return std::clamp(2 * m_batches.back().rows.capacity(), kSmallestBatch, kLargestBatch);
}

std::unique_ptr<unsigned char[]> RowQueue::takeMemory(std::size_t capacity) {
  m_bytesInMemory += capacity;
  return std::make_unique_for_overwrite<unsigned char[]>(capacity);
}

bool RowQueue::spill(Batch& batch) {
  if (!m_spill.append(batch.rows.bytes(), batch.rows.size(), &batch.fileOffset)) {
    return false;
  }
  ++m_batchesOnDisk;
  if (batch.readersInside == 0) {
    unload(batch);
  }
  return true;
}

bool RowQueue::load(Batch& batch) {
  batch.rows.putBytes(takeMemory(batch.rows.capacity()));
  if (!m_spill.read(batch.fileOffset, batch.rows.bytes(), batch.rows.size())) {
    unload(batch);
    return false;
  }
  return true;
}

void RowQueue::unload(Batch& batch) {
  if (batch.rows.bytes() != nullptr) {
    batch.rows.putBytes(nullptr);
    m_bytesInMemory -= batch.rows.capacity();
  }
}

// One reader fewer will come to the batch.
void RowQueue::noteArrival(Batch& batch) {
  if (--batch.readersToCome > 0) {
    return;
  }
  m_bytesWaiting -= static_cast<long long>(batch.rows.size());
  if (batch.fileOffset < 0) {
    return;
  }
  if (--m_batchesOnDisk == 0) {
    m_spill.restart();
  } else {
    m_spill.forget(batch.fileOffset, batch.rows.size());
  }
  batch.fileOffset = -1;
}

void RowQueue::dropWhenRead(Batches::iterator batch) {
  if (batch->readersInside > 0) {
    return;
  }
  if (batch->readersToCome == 0) {
    unload(*batch);
    m_batches.erase(batch);
  } else if (batch->fileOffset >= 0) {
    unload(*batch);
  }
}

void RowQueue::Reader::join() {
  m_isJoined = true;
  ++m_queue.m_readerCount;
}

bool RowQueue::Reader::hasRow() const {
  return m_isJoined && ((isInside() && m_rowsTaken < m_batch->rows.rowCount()) ||
                        nextBatch() != m_queue.m_batches.end());
}

bool RowQueue::Reader::next(unsigned char** values) {
  if (!isInside() || m_rowsTaken == m_batch->rows.rowCount()) {
    if (!enterNextBatch()) {
      return false;
    }
  }
  m_position = m_queue.m_layout->pointAt(m_position, values);
  ++m_rowsTaken;
  return true;
}

bool RowQueue::Reader::enterNextBatch() {
  const Batches::iterator left = m_batch;
  const bool wasInside = isInside();
  m_batch = nextBatch();
  if (m_batch->rows.bytes() == nullptr && !m_queue.load(*m_batch)) {
    m_batch = left;
    return false;
  }
  ++m_batch->readersInside;
  m_queue.noteArrival(*m_batch);
  m_rowsTaken = 0;
  m_position = m_batch->rows.bytes();
  if (wasInside) {
    --left->readersInside;
    m_queue.dropWhenRead(left);
  }
  return true;
}

RowsAhead RowQueue::Reader::rowsAhead() const {
  if (m_rowsTaken == 0 || m_queue.m_layout->rowSize() == 0) {
    return {};
  }
  return {&m_batch->rows, m_rowsTaken - 1, m_batch->rows.rowCount() - m_rowsTaken + 1};
}

void RowQueue::Reader::leave() {
  if (!m_isJoined) {
    return;
  }
  m_isJoined = false;
  --m_queue.m_readerCount;
  for (Batches::iterator batch = nextBatch(); batch != m_queue.m_batches.end();) {
    const Batches::iterator left = batch++;
    m_queue.noteArrival(*left);
    m_queue.dropWhenRead(left);
  }
}

void RowQueue::Reader::release() {
  if (!isInside()) {
    return;
  }
  const Batches::iterator left = m_batch;
  m_batch = m_queue.m_batches.end();
  m_rowsTaken = 0;
  --left->readersInside;
  m_queue.dropWhenRead(left);
}

}  // namespace kelvarin
