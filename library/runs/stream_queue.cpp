#include "library/runs/stream_queue.h"

#include <utility>

#include "library/runs/messages.h"

namespace kelvarin {

void StreamQueue::begin(const TableColumns& columns) {
  const std::lock_guard lock(m_mutex);
  m_columns = columns;
  m_changed.notify_all();
}

bool StreamQueue::take(std::vector<OwnedArray> arrays) {
  for (OwnedArray& array : arrays) {
    if (!m_arrays.push(std::move(array))) {
      return false;
    }
  }
  return true;
}

void StreamQueue::end() {
  {
    const std::lock_guard lock(m_mutex);
    m_isComplete = true;
  }
  m_arrays.finish();
}

void StreamQueue::beginRun() {
  const std::lock_guard lock(m_mutex);
  m_hasBegun = true;
}

void StreamQueue::endRun(std::optional<ErrorDetails> error) {
  {
    const std::lock_guard lock(m_mutex);
    m_isOver = true;
    m_error = std::move(error);
    m_changed.notify_all();
  }
  m_arrays.finish();
}

void StreamQueue::stop() {
  {
    const std::lock_guard lock(m_mutex);
    m_isStopped = true;
    m_changed.notify_all();
  }
  m_arrays.stop();
}

std::optional<ErrorDetails> StreamQueue::awaitError() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_isOver || (m_isComplete && !m_isStopped); });
  if (m_isStopped && !m_error) {
    return errorOfLog({}, GlobalParameters::RunningState::stoppedByUser);
  }
  return m_isComplete && !m_isStopped ? std::nullopt : m_error;
}

Outcome<TableColumns> StreamQueue::awaitColumns() {
  std::unique_lock lock(m_mutex);
  if (!m_hasBegun) {
    return Failure{errorOf(KELVARIN_WRONG_ARGUMENT, library_messages::notStarted())};
  }
  m_changed.wait(lock, [this] { return m_isOver || m_columns; });
  if (!m_columns && m_error) {
    return Failure{*m_error};
  }
  return m_columns.value_or(TableColumns());
}

Outcome<OwnedArray> StreamQueue::next() {
  {
    const std::lock_guard lock(m_mutex);
    if (!m_hasBegun) {
      return Failure{errorOf(KELVARIN_WRONG_ARGUMENT, library_messages::notStarted())};
    }
  }
  if (std::optional<OwnedArray> array = m_arrays.pop()) {
    return std::move(*array);
  }
  if (auto error = awaitError()) {
    return Failure{std::move(*error)};
  }
  return OwnedArray();
}

}  // namespace kelvarin
