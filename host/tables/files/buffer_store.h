// Buffers that have been used up, whose memory is used again.
//
// Used by: readers and encoders, whose tasks need large buffers for a short time.
// Threads: any.
#pragma once

#include <mutex>
#include <utility>
#include <vector>

namespace kelvarin {

template <typename Buffer>
class BufferStore {
 public:
  // An empty one where none has been given back.
  Buffer take() {
    const std::lock_guard lock(m_mutex);
    if (m_buffers.empty()) {
      return Buffer();
    }
    Buffer buffer = std::move(m_buffers.back());
    m_buffers.pop_back();
    return buffer;
  }
  void giveBack(Buffer buffer) {
    const std::lock_guard lock(m_mutex);
    m_buffers.push_back(std::move(buffer));
  }

 private:
  std::mutex m_mutex;
  std::vector<Buffer> m_buffers;
};

}  // namespace kelvarin
