#include "host/tables/files/read_ahead.h"

#include <chrono>

namespace kelvarin {

ReadAhead::ReadAhead(BatchReader& reader, const std::vector<MetaTypeColumn>& types)
    : m_reader(reader) {
  for (RowBatch& batch : m_batches) {
    batch.setColumns(types);
  }
  m_thread = std::thread([this] { run(); });
}

ReadAhead::~ReadAhead() {
  stop();
}

RowBatch* ReadAhead::next(const std::function<bool()>& mayWait) {
  constexpr auto kBetweenLooks = std::chrono::milliseconds(100);
  std::unique_lock lock(m_mutex);
  const auto isSettled = [this] { return m_filled > m_taken || m_hasEnded; };
  while (!m_changed.wait_for(lock, kBetweenLooks, isSettled)) {
    if (!mayWait()) {
      return nullptr;
    }
  }
  if (m_filled == m_taken) {
    return nullptr;
  }
  RowBatch* full = &m_batches[m_taken % kBatchCount];
  ++m_taken;
  m_changed.notify_all();
  return full;
}

void ReadAhead::stop() {
  {
    const std::lock_guard lock(m_mutex);
    m_isStopping = true;
  }
  m_changed.notify_all();
  m_reader.cancel();
  if (m_thread.joinable()) {
    m_thread.join();
  }
}

void ReadAhead::run() {
  while (waitForEmptyBatch()) {
    Result<ReadOutcome, QString> outcome = m_reader.next(m_batches[m_filled % kBatchCount]);
    const bool hasRows = outcome && *outcome == ReadOutcome::rows;
    {
      const std::lock_guard lock(m_mutex);
      if (!outcome) {
        m_failure = outcome.error();
      }
      m_filled += hasRows ? 1 : 0;
      m_hasEnded = !hasRows;
    }
    m_changed.notify_all();
    if (!hasRows) {
      return;
    }
  }
}

bool ReadAhead::waitForEmptyBatch() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_isStopping || m_filled - released() < kBatchCount; });
  return !m_isStopping;
}

}  // namespace kelvarin
