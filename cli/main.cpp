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

#include <malloc.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QCoreApplication>

#include "cli/commands.h"
#include "cli/interrupt.h"
#include "cli/last_resort.h"
#include "cli/messages.h"
#include "host/contract/main_ui.h"
#include "host/contract/nearest_names.h"

namespace {

using kelvarin::ExitStatus;

// The command that was being read.
const CLI::App& readCommand(const CLI::App& program) {
  const auto parsed = program.get_subcommands();
  return parsed.empty() ? program : readCommand(*parsed.front());
}

// About the command that was being read.
std::string usageHint(const CLI::App& program) {
  const CLI::App& read = readCommand(program);
  QString command = QString::fromStdString(read.get_name());
  for (const CLI::App* outer = read.get_parent(); outer != nullptr; outer = outer->get_parent()) {
    command = QString::fromStdString(outer->get_name()) + u' ' + command;
  }
  return kelvarin::program_messages::usageHint(command).toStdString();
}

QString didYouMean(const QString& given, const QStringList& names) {
  const QStringList near = kelvarin::nearestNames(given, names);
  return near.isEmpty()
             ? QString()
             : u' ' + kelvarin::program_messages::didYouMean(near.join(QLatin1String(" or ")));
}

// Without it a misspelt command would be reported as a missing one.
bool reportUnknownCommand(const CLI::App& program, int argc, char** argv) {
  QStringList names;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    names += QString::fromStdString(command->get_name());
  }
  if (names.isEmpty() || argc < 2 || argv[1][0] == '-') {
    return false;
  }
  const QString given = QString::fromLocal8Bit(argv[1]);
  if (names.contains(given)) {
    return reportUnknownCommand(*program.get_subcommand(argv[1]), argc - 1, argv + 1);
  }
  const QString text = kelvarin::program_messages::unknownCommand(given) + didYouMean(given, names);
  std::fprintf(stderr, "error: %s\n%s\n", qUtf8Printable(text), usageHint(program).c_str());
  return true;
}

// Of an option that the command does not have, or of an expression that looks like one; empty where
// there is none. The library would report what is missing because of it.
QString unknownOption(const CLI::App& program) {
  namespace texts = kelvarin::program_messages;
  const CLI::App& command = readCommand(program);
  for (const std::string& argument : program.remaining(true)) {
    if (argument.size() < 2 || argument.front() != '-') {
      continue;
    }
    const QString given = QString::fromLocal8Bit(argument.c_str());
    QStringList names;
    for (const CLI::Option* option : command.get_options()) {
      for (const std::string& name : option->get_lnames()) {
        names += QStringLiteral("--") + QString::fromStdString(name);
      }
    }
    const QString name = given.section(u'=', 0, 0);
    const QString text = texts::unknownOption(name) + didYouMean(name, names);
    const CLI::Option* expression = command.get_option_no_throw("EXPR");
    const bool isExpressionMissing = expression != nullptr && expression->count() == 0;
    return isExpressionMissing ? text + texts::minusFirst(given) : text;
  }
  return {};
}

ExitStatus finishParsing(const CLI::App& program, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) {
    program.exit(error);  // help or version
    return ExitStatus::done;
  }
  const QString option = unknownOption(program);
  const QString text = option.isEmpty() ? QString::fromLocal8Bit(error.what()) : option;
  std::fprintf(stderr, "error: %s\n%s\n", qUtf8Printable(text), usageHint(program).c_str());
  return ExitStatus::wrongUsage;
}

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

  CLI::App program(
      "Reads tables, computes and filters their rows, and writes them, as a graph file says.",
      "kelvarin");
  program.set_version_flag("--version", MainUI::kelvarinID().toStdString());
  program.require_subcommand(1);
  program.footer(
      "Example:\n  kelvarin run examples/flights/flights.kelvarin\n\n"
      "Exit status: 0 done, 1 the work failed, 2 wrong usage, 130 interrupted.");
  kelvarin::ChosenCommand chosen;
  kelvarin::addRunCommand(program, chosen);
  kelvarin::addCheckCommand(program, chosen);
  kelvarin::addEvalCommand(program, chosen);
  kelvarin::addFunctionsCommand(program, chosen);
  kelvarin::addActionsCommand(program, chosen);
  kelvarin::addGelCommand(program, chosen);
  const kelvarin::ProgramArguments programArguments{argv, [&application] { application.reset(); }};
  kelvarin::addGuiCommand(program, chosen, programArguments);
  kelvarin::addEditCommand(program, chosen, programArguments);

  if (reportUnknownCommand(program, argc, argv)) {
    return ExitStatus::wrongUsage;
  }
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return finishParsing(program, error);
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
