// What the library logs during one piece of work.
//
// Threads: any.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "include/kelvarin/kelvarin.h"

namespace kelvarin_python {

struct Message {
  int level;
  std::string action;
  std::string text;
};

class MessageLog {
 public:
  MessageLog() = default;
  MessageLog(const MessageLog&) = delete;
  MessageLog& operator=(const MessageLog&) = delete;

  // For the options of a call; this object must live as long as the work.
  kelvarin_log receiver() { return {append, this}; }
  std::vector<Message> messages() const {
    const std::lock_guard lock(m_mutex);
    return m_messages;
  }

 private:
  static void append(void* log, int32_t level, const char* action, const char* text) {
    auto& self = *static_cast<MessageLog*>(log);
    const std::lock_guard lock(self.m_mutex);
    self.m_messages.push_back({level, action == nullptr ? "" : action, text});
  }

  mutable std::mutex m_mutex;
  std::vector<Message> m_messages;
};

}  // namespace kelvarin_python
