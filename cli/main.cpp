// The program `kelvarin`: runs and checks graphs, evaluates expressions and lists what there is to use.
//
// Exit status: exit_status.h. Standard output carries results only; everything else goes to standard error.
#include <csignal>
#include <cstdio>

#include <QCoreApplication>

#include "cli/commands.h"
#include "cli/messages.h"
#include "host/contract/main_ui.h"
#include "host/contract/nearest_names.h"

namespace {

using kelvarin::ExitStatus;

std::string usageHint(const CLI::App& program) {
  const auto commands = program.get_subcommands();
  const QString command = commands.empty() ? QStringLiteral("kelvarin")
                                           : QStringLiteral("kelvarin ") +
                                                 QString::fromStdString(commands.front()->get_name());
  return QString::fromLatin1(kelvarin::program_messages::kUsageHint).arg(command).toStdString();
}

// Without it a misspelt command would be told as a missing one.
bool tellUnknownCommand(const CLI::App& program, int argc, char** argv) {
  if (argc < 2 || argv[1][0] == '-') {
    return false;
  }
  const QString given = QString::fromLocal8Bit(argv[1]);
  QStringList names;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    names += QString::fromStdString(command->get_name());
  }
  if (names.contains(given)) {
    return false;
  }
  QString text = QString::fromLatin1(kelvarin::program_messages::kUnknownCommand).arg(given);
  if (const QStringList near = kelvarin::nearestNames(given, names); !near.isEmpty()) {
    text += u' ' + QString::fromLatin1(kelvarin::program_messages::kDidYouMean).arg(near.join(QLatin1String(" or ")));
  }
  std::fprintf(stderr, "error: %s\n%s\n", qUtf8Printable(text), usageHint(program).c_str());
  return true;
}

ExitStatus finishParsing(const CLI::App& program, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) {
    program.exit(error);  // help or version
    return ExitStatus::done;
  }
  std::fprintf(stderr, "error: %s\n%s\n", error.what(), usageHint(program).c_str());
  return ExitStatus::wrongUsage;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader of our output that went away is an error of a write, not the end of the process.
  std::signal(SIGPIPE, SIG_IGN);
  QCoreApplication application(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("kelvarin"));

  CLI::App program("Reads tables, computes and filters their rows, and writes them, as a graph file says.", "kelvarin");
  program.set_version_flag("--version", MainUI::kelvarinID().toStdString());
  program.require_subcommand(1);
  program.footer("Example:\n  kelvarin run examples/flights/flights.kelvarin\n\n"
                 "Exit status: 0 done, 1 the work failed, 2 wrong usage, 130 interrupted.");
  kelvarin::ChosenCommand chosen;
  kelvarin::addRunCommand(program, chosen);
  kelvarin::addCheckCommand(program, chosen);
  kelvarin::addEvalCommand(program, chosen);
  kelvarin::addFunctionsCommand(program, chosen);
  kelvarin::addActionsCommand(program, chosen);
  kelvarin::addGelCommand(program, chosen);

  if (tellUnknownCommand(program, argc, argv)) {
    return static_cast<int>(ExitStatus::wrongUsage);
  }
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return static_cast<int>(finishParsing(program, error));
  }
  return static_cast<int>(chosen());
}
