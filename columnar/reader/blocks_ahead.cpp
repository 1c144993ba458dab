#include "columnar/reader/blocks_ahead.h"

#include <utility>

namespace kelvarin {

namespace {

// As many rows or events make a hand-over.
constexpr std::uint64_t kRowsAtOnce = 2048;
constexpr std::size_t kEventsAtOnce = 256;

}  // namespace

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
  ReadEvent event = m_handOver ? takeEvent() : m_produce(takeSpare());
  m_isFinished = event.isLast();
  return event;
}

ReadEvent BlocksAhead::takeEvent() {
  if (m_nextTaken == m_taken.size()) {
    m_taken = m_handOver->take().value_or(Events{});
    m_nextTaken = 0;
  }
  if (m_taken.empty() && m_exception) {
    std::rethrow_exception(std::exchange(m_exception, nullptr));
  }
  return m_taken.empty() ? ReadEvent{} : std::move(m_taken[m_nextTaken++]);
}

void BlocksAhead::giveBack(std::unique_ptr<DecodedBlock> block) {
  const std::lock_guard lock(m_spareMutex);
  m_spares.push_back(std::move(block));
}

void BlocksAhead::run() {
  try {
    handOverAll();
  } catch (...) {
    m_exception = std::current_exception();
  }
  m_handOver->finish();
}

void BlocksAhead::handOverAll() {
  bool isLast = false;
  while (!isLast && m_handOver->waitForRoom()) {
    Events events = produceSome();
    isLast = events.back().isLast();
    m_handOver->put(std::move(events));
  }
}

BlocksAhead::Events BlocksAhead::produceSome() {
  Events events;
  std::uint64_t rows = 0;
  while (rows < kRowsAtOnce && events.size() < kEventsAtOnce) {
    events.push_back(m_produce(takeSpare()));
    if (events.back().isLast()) {
      break;
    }
    rows += events.back().block ? events.back().lastRow - events.back().firstRow + 1 : 0;
  }
  return events;
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
