#include "host/engine/row_queue.h"

#include <algorithm>

#include "host/engine/batch_bytes.h"

namespace kelvarin {

RowQueue::RowQueue(const ExecutionOptions& options)
    : m_memoryLimit(static_cast<std::size_t>(std::max(0LL, options.queueMemoryBytes))),
      m_spill(options.temporaryFolder) {}

// The newest batch stays in memory, since most often somebody takes it at once. Once batches are on
// disk, all that follow go there, since those in memory are taken before.
bool RowQueue::push(RowBatchPointer batch) {
  m_rowsPushed += static_cast<long long>(batch->rowCount());
  if (m_readers.empty()) {
    return true;
  }
  if (m_types.empty()) {
    m_types = typesOf(*batch);
  }
  const bool isFull = m_bytesInMemory >= m_memoryLimit || m_entriesOnDisk > 0;
  if (isFull && !m_entries.empty() && !spill(m_entries.back())) {
    return false;
  }
  const std::size_t rowCount = batch->rowCount();
  const std::size_t byteCount = batch->byteCount();
  m_entries.push_back({std::move(batch), rowCount, byteCount, readerCount()});
  m_rowsWaiting += static_cast<long long>(rowCount);
  m_bytesInMemory += byteCount;
  for (Reader* reader : m_readers) {
    if (reader->m_next == m_entries.end()) {
      reader->m_next = std::prev(m_entries.end());
    }
  }
  return true;
}

bool RowQueue::spill(Entry& entry) {
  m_bytes.clear();
  appendBytes(*entry.batch, m_bytes);
  if (!m_spill.append(m_bytes.data(), m_bytes.size(), &entry.fileOffset)) {
    return false;
  }
  entry.fileSize = m_bytes.size();
  entry.batch = nullptr;
  m_bytesInMemory -= entry.byteCount;
  ++m_entriesOnDisk;
  return true;
}

RowBatchPointer RowQueue::load(Entry& entry) {
  if (entry.batch != nullptr) {
    return entry.batch;
  }
  std::shared_ptr<unsigned char[]> bytes =
      std::make_shared_for_overwrite<unsigned char[]>(entry.fileSize);
  if (!m_spill.read(entry.fileOffset, bytes.get(), entry.fileSize)) {
    return nullptr;
  }
  return batchFromBytes(m_types, entry.rowCount, std::move(bytes));
}

// One reader fewer will come to the batch.
void RowQueue::noteTaken(Entries::iterator entry) {
  if (--entry->readersToCome > 0) {
    return;
  }
  m_rowsWaiting -= static_cast<long long>(entry->rowCount);
  if (entry->batch != nullptr) {
    m_bytesInMemory -= entry->byteCount;
  } else if (--m_entriesOnDisk == 0) {
    m_spill.restart();
  } else {
    m_spill.forget(entry->fileOffset, entry->fileSize);
  }
  m_entries.erase(entry);
}

void RowQueue::Reader::join() {
  m_isJoined = true;
  m_rowsTaken = m_queue.m_rowsPushed;
  m_queue.m_readers.push_back(this);
}

bool RowQueue::Reader::hasBatch() const {
  return m_isJoined && m_next != m_queue.m_entries.end();
}

RowBatchPointer RowQueue::Reader::next() {
  RowBatchPointer batch = m_queue.load(*m_next);
  if (batch == nullptr) {
    return nullptr;
  }
  const Entries::iterator taken = m_next++;
  m_rowsTaken += static_cast<long long>(taken->rowCount);
  m_queue.noteTaken(taken);
  return batch;
}

void RowQueue::Reader::leave() {
  if (!m_isJoined) {
    return;
  }
  m_isJoined = false;
  std::erase(m_queue.m_readers, this);
  while (m_next != m_queue.m_entries.end()) {
    m_queue.noteTaken(m_next++);
  }
}

}  // namespace kelvarin
