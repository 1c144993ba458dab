#include "columnar/reader/blocks_ahead.h"

#include <utility>

namespace kelvarin {

BlocksAhead::BlocksAhead(Produce produce, int blocksAhead) : m_produce(std::move(produce)) {
  if (blocksAhead > 0) {
    m_handOver.emplace(static_cast<std::size_t>(blocksAhead));
    m_thread = std::thread([this] { run(); });
  }
}

BlocksAhead::~BlocksAhead() {
  if (m_thread.joinable()) {
    m_handOver->abandon();
    m_thread.join();
  }
}

ReadEvent BlocksAhead::next() {
  if (m_isFinished) {
    return {};
  }
  ReadEvent event = m_handOver ? m_handOver->take().value_or(ReadEvent{}) : m_produce(takeSpare());
  m_isFinished = event.isLast();
  return event;
}

void BlocksAhead::giveBack(std::unique_ptr<DecodedBlock> block) {
  const std::lock_guard lock(m_spareMutex);
  m_spares.push_back(std::move(block));
}

void BlocksAhead::run() {
  bool isLast = false;
  while (!isLast && m_handOver->waitForRoom()) {
    ReadEvent event = m_produce(takeSpare());
    isLast = event.isLast();
    m_handOver->put(std::move(event));
  }
  m_handOver->finish();
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
