// What one graph at work in this process has for itself: who hears its actions and answers them,
// and which files they have claimed.
//
// A program makes one for its own thread; the engine makes one for each run, check and branch, so
// that graphs run side by side. The statics of the contract (MainUI, hostServices(),
// logWithDetails()) are doors to the session in which the calling thread works. Whoever starts a
// thread that logs, asks or claims enters the starter's session there.
// Threads: any number may work in one session; a thread works in one at a time.
#pragma once

#include <atomic>

#include "base/export.h"
#include "host/contract/claimed_names.h"

class ActionItem;

namespace kelvarin {

class HostServices;

class KELVARIN_CORE HostSession {
 public:
  // Null: log lines go to standard error, and questions take their safe answers.
  explicit HostSession(HostServices* services) : m_services(services) {}
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;

  HostServices* services() const { return m_services; }
  FileClaims& claims() { return m_claims; }

  // Null outside of all.
  static HostSession* current();

  // While it lives, the thread that made it works in the session, or in none, at first for no
  // action.
  class KELVARIN_CORE Scope {
   public:
    explicit Scope(HostSession* session);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    HostSession* m_outer;
    const ActionItem* m_actionOfOuter;
  };

 private:
  HostServices* m_services;
  FileClaims m_claims;
};

// The action on whose behalf this thread works, so that a log line can name it. Worker threads of
// an action set it too.
class KELVARIN_CORE CurrentAction {
 public:
  // A variable of one thread, at which others may look.
  using Slot = std::atomic<const ActionItem*>;

  explicit CurrentAction(const ActionItem* action) : CurrentAction(action, slot()) {}
  // For those who set it once a row: `slot` is the thread's own.
  CurrentAction(const ActionItem* action, Slot& slot)
      : m_slot(slot), m_outer(slot.load(std::memory_order_relaxed)) {
    m_slot.store(action, std::memory_order_relaxed);
  }
  ~CurrentAction() { m_slot.store(m_outer, std::memory_order_relaxed); }
  CurrentAction(const CurrentAction&) = delete;
  CurrentAction& operator=(const CurrentAction&) = delete;

  static const ActionItem* get() { return slot().load(std::memory_order_relaxed); }
  static Slot& slot();

 private:
  Slot& m_slot;
  const ActionItem* m_outer;
};

}  // namespace kelvarin
