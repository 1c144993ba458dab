#include "columnar/writer/block_hand_over.h"

namespace kelvarin {

void BlockHandOver::handOver() {
  const std::lock_guard lock(m_mutex);
  ++m_filled;
  m_changed.notify_all();
}

bool BlockHandOver::awaitFree() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_isStopped || m_filled - m_released < kBuffers; });
  return !m_isStopped;
}

bool BlockHandOver::awaitReleased(std::uint64_t blocks) {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [&] { return m_isStopped || m_released >= blocks; });
  return m_released >= blocks;
}

void BlockHandOver::finish() {
  const std::lock_guard lock(m_mutex);
  m_isFinished = true;
  m_changed.notify_all();
}

std::optional<std::uint64_t> BlockHandOver::awaitFilled() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_isStopped || m_isFinished || m_filled > m_released; });
  if (m_isStopped || m_filled == m_released) {
    return std::nullopt;
  }
  return m_released;
}

void BlockHandOver::release() {
  const std::lock_guard lock(m_mutex);
  ++m_released;
  m_changed.notify_all();
}

void BlockHandOver::stop() {
  const std::lock_guard lock(m_mutex);
  m_isStopped = true;
  m_changed.notify_all();
}

}  // namespace kelvarin
