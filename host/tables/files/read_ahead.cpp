#include "host/tables/files/read_ahead.h"

#include <chrono>
#include <optional>
#include <utility>

#include "host/contract/host_session.h"

namespace kelvarin {

namespace {
constexpr auto kBetweenLooks = std::chrono::milliseconds(20);
}

ReadAhead::ReadAhead(BatchReader& reader, const ActionItem* action)
    : m_reader(reader), m_action(action) {}

ReadAhead::~ReadAhead() {
  stop();
}

Result<TableColumns, QString> ReadAhead::open(const MayWait& mayWait) {
  std::optional<Result<TableColumns, QString>> columns;
  run([this, &columns] { columns.emplace(m_reader.open()); });
  if (!waitForEnd(mayWait)) {
    m_reader.cancel();
  }
  m_thread.join();
  m_hasEnded = false;
  rethrow();
  return std::move(*columns);
}

void ReadAhead::start(const std::vector<MetaTypeColumn>& types) {
  for (RowBatch& batch : m_batches) {
    batch.setColumns(types);
  }
  run([this] { readBatches(); });
}

RowBatch* ReadAhead::next(const MayWait& mayWait) {
  std::unique_lock lock(m_mutex);
  const auto isSettled = [this] { return m_filled > m_taken || m_hasEnded; };
  while (!m_changed.wait_for(lock, kBetweenLooks, isSettled)) {
    if (!mayWait()) {
      return nullptr;
    }
  }
  if (m_filled == m_taken) {
    rethrow();
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

void ReadAhead::run(std::function<void()> work) {
  m_thread = std::thread([this, session = HostSession::current(), work = std::move(work)] {
    const HostSession::Scope scope(session);
    const CurrentAction current(m_action);
    try {
      work();
    } catch (...) {
      m_exception = std::current_exception();
    }
    const std::lock_guard lock(m_mutex);
    m_hasEnded = true;
    m_changed.notify_all();
  });
}

void ReadAhead::readBatches() {
  while (waitForEmptyBatch()) {
    const Result<ReadOutcome, QString> outcome = m_reader.next(m_batches[m_filled % kBatchCount]);
    if (!outcome) {
      m_failure = outcome.error();
    }
    if (!outcome || *outcome == ReadOutcome::end) {
      return;
    }
    const std::lock_guard lock(m_mutex);
    ++m_filled;
    m_changed.notify_all();
  }
}

bool ReadAhead::waitForEmptyBatch() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_isStopping || m_filled - released() < kBatchCount; });
  return !m_isStopping;
}

// False when `mayWait` answers false.
bool ReadAhead::waitForEnd(const MayWait& mayWait) {
  std::unique_lock lock(m_mutex);
  while (!m_changed.wait_for(lock, kBetweenLooks, [this] { return m_hasEnded; })) {
    if (!mayWait()) {
      return false;
    }
  }
  return true;
}

// The consumer's caller knows the action, and what to say about exceptions.
void ReadAhead::rethrow() {
  if (m_exception) {
    std::rethrow_exception(std::exchange(m_exception, nullptr));
  }
}

}  // namespace kelvarin
