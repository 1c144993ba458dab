#include "host/engine/graph_stack.h"

#include <exception>

#include <pthread.h>

#include "host/contract/host_session.h"
#include "host/contract/main_ui.h"
#include "host/engine/graph_links.h"
#include "host/engine/messages.h"

namespace kelvarin {

namespace {

// So many fit on every thread's stack, sanitized ones included.
constexpr int kDepthOfAnyThread = 250;
// A pull of a row takes a few hundred bytes an action, and a few thousand where it is the first row
// of an action that reads a table of variables, or with a sanitizer.
constexpr std::size_t kBytesPerAction = 16 * 1024;

struct Work {
  const std::function<void()>& work;
  HostSession* session;  // of the caller
  std::exception_ptr failure;
};

void* workOnThread(void* argument) {
  auto& self = *static_cast<Work*>(argument);
  const HostSession::Scope scope(self.session);
  try {
    self.work();
  } catch (...) {
    self.failure = std::current_exception();
  }
  return nullptr;
}

bool refuse(const QString& text) {
  MainUI::addLog(LogLevel::error, text);
  return false;
}

}  // namespace

bool workOnGraphStack(const Graph& graph, const std::function<void()>& work) {
  if (graph.actions.empty()) {
    return refuse(engine_messages::graphWithoutActions(graph.file));
  }
  const int depth = GraphLinks(graph).depth();
  if (depth <= kDepthOfAnyThread) {
    work();
    return true;
  }
  if (depth > kDeepestGraph) {
    return refuse(engine_messages::graphTooDeep(graph.file, depth, kDeepestGraph));
  }
  Work onThread{work, HostSession::current(), nullptr};
  pthread_attr_t attributes;
  pthread_t thread{};
  pthread_attr_init(&attributes);
  const bool isMade = pthread_attr_setstacksize(
                          &attributes, static_cast<std::size_t>(depth) * kBytesPerAction) == 0 &&
                      pthread_create(&thread, &attributes, &workOnThread, &onThread) == 0;
  pthread_attr_destroy(&attributes);
  if (!isMade) {
    return refuse(engine_messages::noStack(depth));
  }
  pthread_join(thread, nullptr);
  if (onThread.failure != nullptr) {
    std::rethrow_exception(onThread.failure);
  }
  return true;
}

}  // namespace kelvarin
