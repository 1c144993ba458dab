#include "columnar/reader/blocks_ahead.h"

#include <utility>

namespace kelvarin {

namespace {

// A batch ends with this number of rows or events.
constexpr std::uint64_t kRowsInBatch = 2048;
constexpr std::size_t kEventsInBatch = 256;

}  // namespace

BlocksAhead::BlocksAhead(Produce produce, int blocksAhead) : m_produce(std::move(produce)) {
  if (blocksAhead > 0) {
    m_queue.emplace(static_cast<std::size_t>(blocksAhead));
    m_thread = std::thread([this] { run(); });
  }
}

BlocksAhead::~BlocksAhead() {
  if (m_thread.joinable()) {
    m_queue->stop();
    m_thread.join();
  }
}

ReadEvent BlocksAhead::next() {
  if (m_isFinished) {
    return {};
  }
  ReadEvent event = m_queue ? takeEvent() : m_produce(takeSpare());
  m_isFinished = event.isLast();
  return event;
}

ReadEvent BlocksAhead::takeEvent() {
  if (m_nextInBatch == m_batch.size()) {
    m_batch = m_queue->pop().value_or(Batch{});
    m_nextInBatch = 0;
  }
  if (m_batch.empty() && m_exception) {
    std::rethrow_exception(std::exchange(m_exception, nullptr));
  }
  return m_batch.empty() ? ReadEvent{} : std::move(m_batch[m_nextInBatch++]);
}

void BlocksAhead::recycle(std::unique_ptr<DecodedBlock> block) {
  const std::lock_guard lock(m_spareMutex);
  m_spares.push_back(std::move(block));
}

void BlocksAhead::run() {
  try {
    produceAll();
  } catch (...) {
    m_exception = std::current_exception();
  }
  m_queue->finish();
}

void BlocksAhead::produceAll() {
  bool isLast = false;
  while (!isLast && m_queue->waitForSpace()) {
    Batch batch = produceBatch();
    isLast = batch.back().isLast();
    (void)m_queue->push(std::move(batch));
  }
}

BlocksAhead::Batch BlocksAhead::produceBatch() {
  Batch batch;
  std::uint64_t rows = 0;
  while (rows < kRowsInBatch && batch.size() < kEventsInBatch) {
    batch.push_back(m_produce(takeSpare()));
    if (batch.back().isLast()) {
      break;
    }
    rows += batch.back().block ? batch.back().lastRow - batch.back().firstRow + 1 : 0;
  }
  return batch;
}

std::unique_ptr<DecodedBlock> BlocksAhead::takeSpare() {
  const std::lock_guard lock(m_spareMutex);
  if (m_spares.empty()) {
    return nullptr;
  }
  std::unique_ptr<DecodedBlock> spare = std::move(m_spares.back());
  m_spares.pop_back();
  return spare;
}

}  // namespace kelvarin
