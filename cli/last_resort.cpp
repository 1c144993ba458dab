#include "cli/last_resort.h"

#include <atomic>
#include <csignal>
#include <cstring>
#include <exception>
#include <new>

#include <unistd.h>

#include "cli/messages.h"
#include "host/tables/files/unfinished_names.h"

namespace kelvarin {

namespace {

std::atomic<bool> hasHandledException{false};

// Asks for no memory, and for no lock that a failed thread may hold.
void writeLine(const char* what, const char* detail) {
  for (const char* part : {"error: ", what, detail, "\n"}) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, part, std::strlen(part));
  }
}

void reportHandledException() {
  hasHandledException = true;
  try {
    throw;
  } catch (const std::bad_alloc&) {
    writeLine(program_messages::outOfMemory(), "");
  } catch (const std::exception& exception) {
    writeLine(program_messages::internalError(), exception.what());
  } catch (...) {
    writeLine(program_messages::internalError(), program_messages::unknownException());
  }
}

[[noreturn]] void endProcess() {
  removeUnfinishedFiles();
  if (std::current_exception()) {
    reportHandledException();
  } else {
    writeLine(program_messages::internalError(), program_messages::unknownException());
  }
  _exit(static_cast<int>(ExitStatus::failed));
}

constexpr int kFaults[] = {SIGSEGV, SIGBUS, SIGABRT, SIGILL, SIGFPE};

// The system's own answer to the signal follows.
void onFault(int number) {
  removeUnfinishedFiles();
  writeLine(program_messages::crashed(), "");
  raise(number);
}

}  // namespace

void endInOrderOnFaults() {
  std::set_terminate(endProcess);
  static char stackOfHandler[64 * 1024];  // the usual one may be what has run out
  const stack_t stack = {stackOfHandler, 0, sizeof stackOfHandler};
  sigaltstack(&stack, nullptr);
  for (const int number : kFaults) {
    struct sigaction present = {};
    if (sigaction(number, nullptr, &present) != 0 || present.sa_handler != SIG_DFL) {
      continue;  // a tool that looks for faults has come before
    }
    struct sigaction action = {};
    action.sa_handler = onFault;
    action.sa_flags = SA_ONSTACK | SA_RESETHAND | SA_NODEFER;
    sigaction(number, &action, nullptr);
  }
}

ExitStatus guarded(const std::function<ExitStatus()>& work) {
  try {
    return work();
  } catch (...) {
    reportHandledException();
    return ExitStatus::failed;
  }
}

QString textOfHandledException() {
  hasHandledException = true;
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return QString::fromLatin1(program_messages::outOfMemory());
  } catch (const std::exception& exception) {
    return QString::fromLatin1(program_messages::internalError()) +
           QString::fromLocal8Bit(exception.what());
  }
}

void endAfterException(ExitStatus status) {
  if (hasHandledException) {
    removeUnfinishedFiles();
    _exit(static_cast<int>(status));
  }
}

}  // namespace kelvarin
