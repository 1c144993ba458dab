#include "host/tables/files/unfinished_names.h"

#include <atomic>
#include <climits>
#include <cstring>

#include <unistd.h>

namespace kelvarin {

namespace {

enum class State { unused, owned, entered, beingRemoved };

}  // namespace

// Entries are never freed, so that a signal handler can walk along them at any moment. One that is
// being removed is not used again: its path stays as it is.
struct UnfinishedName::Entry {
  std::atomic<State> state{State::owned};
  Entry* next = nullptr;
  char path[PATH_MAX] = {};
};

namespace {

std::atomic<UnfinishedName::Entry*> entries{nullptr};
static_assert(std::atomic<UnfinishedName::Entry*>::is_always_lock_free &&
              std::atomic<State>::is_always_lock_free);

UnfinishedName::Entry* takeEntry() {
  for (UnfinishedName::Entry* entry = entries.load(); entry != nullptr; entry = entry->next) {
    auto expected = State::unused;
    if (entry->state.compare_exchange_strong(expected, State::owned)) {
      return entry;
    }
  }
  auto* made = new UnfinishedName::Entry;
  made->next = entries.load();
  while (!entries.compare_exchange_weak(made->next, made)) {
  }
  return made;
}

}  // namespace

void UnfinishedName::enter(const QByteArray& path) {
  withdraw();
  const auto size = static_cast<std::size_t>(path.size()) + 1;
  if (size > PATH_MAX) {
    return;  // the system takes no such path
  }
  m_entry = takeEntry();
  std::memcpy(m_entry->path, path.constData(), size);
  m_entry->state.store(State::entered);
}

void UnfinishedName::withdraw() {
  if (m_entry != nullptr) {
    auto expected = State::entered;
    m_entry->state.compare_exchange_strong(expected, State::unused);
    m_entry = nullptr;
  }
}

void removeUnfinishedFiles() {
  for (UnfinishedName::Entry* entry = entries.load(); entry != nullptr; entry = entry->next) {
    auto expected = State::entered;
    if (entry->state.compare_exchange_strong(expected, State::beingRemoved)) {
      ::unlink(entry->path);
    }
  }
}

}  // namespace kelvarin
