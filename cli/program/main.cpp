// The program `kelvarin`: runs and checks graphs, evaluates expressions and lists what there is to
// use.
//
// Exit status: exit_status.h. Standard output carries results only; everything else goes to
// standard error.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>

#include <fcntl.h>
#include <malloc.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QCoreApplication>

#include "cli/interrupt.h"
#include "cli/last_resort.h"
#include "cli/messages.h"
#include "cli/program/command_tree.h"
#include "cli/program/usage_errors.h"

namespace {

using kelvarin::ExitStatus;

bool hasReaderLeft() {
  pollfd output = {STDOUT_FILENO, POLLOUT, 0};
  return poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0;
}

// A full disk, for instance. A reader that has seen enough is no failure.
bool isOutputLost() {
  const bool isLost = std::fflush(stdout) != 0 || std::ferror(stdout) != 0;
  if (!isLost || hasReaderLeft()) {
    return false;
  }
  const QString text =
      kelvarin::program_messages::outputLost(QString::fromLocal8Bit(std::strerror(errno)));
  std::fprintf(stderr, "error: %s\n", qUtf8Printable(text));
  return true;
}

// Where a caller has closed it, the first descriptor that is opened would be taken for it.
void openStandardInput() {
  if (::fcntl(STDIN_FILENO, F_GETFD) < 0) {
    (void)!::open("/dev/null", O_RDONLY);
  }
}

// As many as the system grants on demand: a table may be split into many files that are open
// together.
void allowManyOpenFiles() {
  rlimit files = {};
  if (getrlimit(RLIMIT_NOFILE, &files) == 0) {
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_NOFILE, &files);
  }
}

ExitStatus runProgram(int argc, char** argv) {
  std::optional<QCoreApplication> application(std::in_place, argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("kelvarin"));

  kelvarin::ChosenCommand chosen;
  const auto program =
      kelvarin::makeCommandTree(chosen, {argv, [&application] { application.reset(); }});
  if (kelvarin::reportUnknownCommand(*program, argc, argv)) {
    return ExitStatus::wrongUsage;
  }
  try {
    program->parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return kelvarin::finishParsing(*program, error);
  }
  return chosen();
}

// The memory of a batch serves for the next one; given back to the system each time, it would have
// to be cleared and mapped anew.
void keepMemory() {
  (void)::mallopt(M_MMAP_THRESHOLD, 32 << 20);
  (void)::mallopt(M_TRIM_THRESHOLD, 128 << 20);
}

}  // namespace

int main(int argc, char** argv) {
  openStandardInput();
  kelvarin::endOnInterrupt();
  kelvarin::endInOrderOnFaults();
  // A reader of our output that went away is an error of a write, not the end of the process.
  std::signal(SIGPIPE, SIG_IGN);
  allowManyOpenFiles();
  keepMemory();
  const auto work = [&] {
    // Qt's own dispatcher: that of another library, for which nothing here has a use, ends the
    // process where memory does not suffice.
    if (::setenv("QT_NO_GLIB", "1", 1) != 0) {
      throw std::bad_alloc();
    }
    return runProgram(argc, argv);
  };
  ExitStatus status = kelvarin::guarded(work);
  if (isOutputLost() && status == ExitStatus::done) {
    status = ExitStatus::failed;
  }
  kelvarin::endAfterException(status);
  return static_cast<int>(status);
}
