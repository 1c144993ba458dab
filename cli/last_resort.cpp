#include "cli/last_resort.h"

#include <cstring>
#include <exception>
#include <new>

#include <unistd.h>

#include "cli/messages.h"
#include "host/tables/files/unfinished_names.h"

namespace kelvarin {

namespace {

// Asks for no memory, and for no lock that a failed thread may hold.
void writeLine(const char* what, const char* detail) {
  for (const char* part : {"error: ", what, detail, "\n"}) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, part, std::strlen(part));
  }
}

void reportHandledException() {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    writeLine(program_messages::kOutOfMemory, "");
  } catch (const std::exception& exception) {
    writeLine(program_messages::kInternalError, exception.what());
  } catch (...) {
    writeLine(program_messages::kInternalError, program_messages::kUnknownException);
  }
}

[[noreturn]] void endProcess() {
  removeUnfinishedFiles();
  if (std::current_exception()) {
    reportHandledException();
  } else {
    writeLine(program_messages::kInternalError, program_messages::kUnknownException);
  }
  _exit(static_cast<int>(ExitStatus::failed));
}

}  // namespace

void endOnUncaughtException() {
  std::set_terminate(endProcess);
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
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return QString::fromLatin1(program_messages::kOutOfMemory);
  } catch (const std::exception& exception) {
    return QString::fromLatin1(program_messages::kInternalError) +
           QString::fromLocal8Bit(exception.what());
  }
}

}  // namespace kelvarin
