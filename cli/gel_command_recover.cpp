// `kelvarin gel recover`: a new table from what is left of one whose writer was stopped, or whose
// descriptors are damaged.
#include <filesystem>

#include <QDir>

#include "cli/gel_command.h"
#include "cli/gel_command_messages.h"
#include "cli/graph_session.h"
#include "cli/program_services.h"
#include "cli/recovered_table.h"
#include "columnar/format/file_names.h"
#include "host/engine/graph_reader.h"
#include "host/tables/table_actions.h"

namespace kelvarin {

namespace {

struct RecoverArguments {
  std::string input;
  std::string output;
  std::string plugin;
  int diskWaitSeconds = 60;
  bool isQuiet = false;
};

QString textOf(const std::string& text) {
  return QString::fromStdString(text);
}

bool isColumnar(const std::string& path) {
  return path.ends_with(kMainFileExtension);
}

// The names under which a table's files are, or would be.
std::vector<std::string> filesOf(const std::string& mainFile, int setCount) {
  std::vector<std::string> files{mainFile};
  for (int set = 0; set < setCount; ++set) {
    files.push_back(sideFileName(mainFile, set));
  }
  return files;
}

// A file of the damaged table that writing the new one would replace; empty when there is none.
std::string sharedFile(const GelFile& file, const std::string& output) {
  const auto outputs = isColumnar(output) ? filesOf(output, kMaxColumnSets)
                                          : std::vector<std::string>{output};
  std::error_code ignored;
  for (const std::string& input : filesOf(file.path(), file.columnSetCount())) {
    for (const std::string& candidate : outputs) {
      if (std::filesystem::equivalent(input, candidate, ignored)) {
        return input;
      }
    }
  }
  return {};
}

QByteArray graphOf(const GelFile& file, const TableKind* kind) {
  const QString sink =
      kind == nullptr
          ? QStringLiteral("<writeColumnarGel name='output' file='${output}' nRowsInBlock='%1'/>")
                .arg(file.rowsInBlock())
          : QStringLiteral("<Write%1 name='output' file='${output}' %2/>")
                .arg(QString::fromLatin1(kind->action), QString::fromLatin1(kind->attributes));
  return QStringLiteral(
             "<KelvarinGraph version='1.0'><Parameters><Parameter name='output' value=''/>"
             "</Parameters><Actions><%1 name='input'/>%2</Actions>"
             "<Links><Link from='input' to='output'/></Links></KelvarinGraph>")
      .arg(QString::fromLatin1(RecoveredTable::kTypeName), sink)
      .toUtf8();
}

Result<std::unique_ptr<ActionCatalogue>, QString> catalogueWith(
    const std::string& plugin, std::unique_ptr<RecoveredTable> source) {
  auto library = PluginLibrary::load(textOf(plugin));
  if (!library) {
    return Failure{library.error()};
  }
  ActionCatalogue::Prototypes actions = makeTableActions();
  actions.push_back(std::move(source));
  return std::make_unique<ActionCatalogue>(std::move(*library), std::move(actions));
}

// What was recovered and what was not; the result says whether that is all.
ExitStatus reportOutcome(const RecoverArguments& arguments, const RecoveryOutcome& outcome,
                         Console& console) {
  const auto log = [&](LogLevel level, const QString& text) { console.writeLog(level, text); };
  const QString input = textOf(arguments.input);
  if (outcome.rows > 0) {
    log(LogLevel::information,
         QString::fromLatin1(gel_messages::kRecovered)
             .arg(textOf(counted(outcome.rows, "row")), textOf(counted(outcome.blocks, "block")),
                  textOf(arguments.output)));
  } else {
    log(LogLevel::error, QString::fromLatin1(gel_messages::kNothingRecovered)
                              .arg(input, textOf(arguments.output)));
  }
  if (outcome.foundBlocks > 0) {
    log(LogLevel::information, QString::fromLatin1(gel_messages::kFoundBlocks)
                                    .arg(textOf(counted(outcome.foundBlocks, "block"))));
  }
  if (outcome.lostBlocks > 0 || outcome.lostRows > 0) {
    log(LogLevel::warning, QString::fromLatin1(gel_messages::kLost)
                                .arg(textOf(counted(outcome.lostBlocks, "block")),
                                     textOf(counted(outcome.lostRows, "row")), input));
  }
  if (outcome.hasUncountedLoss) {
    log(LogLevel::warning, QString::fromLatin1(gel_messages::kLostUncounted).arg(input));
  }
  if (outcome.hasUnfinished) {
    log(LogLevel::information, QString::fromLatin1(gel_messages::kUnfinished).arg(input));
  }
  return outcome.rows > 0 && !outcome.hasLoss() ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus writeRecovered(const RecoverArguments& arguments, const GelFile& file,
                          TableRecovery& recovery, Console& console) {
  const ProgramServices services(console, arguments.diskWaitSeconds);
  const auto catalogue = catalogueWith(
      arguments.plugin,
      std::make_unique<RecoveredTable>(XMLNode::emptyNode(), nullptr, file, recovery));
  if (!catalogue) {
    console.writeLog(LogLevel::error, catalogue.error());
    return ExitStatus::failed;
  }
  const std::vector<ParameterOverride> files{
      {QStringLiteral("output"), QDir::current().absoluteFilePath(textOf(arguments.output))}};
  auto graph = parseGraph(graphOf(file, tableKindOf(arguments.output)),
                          QDir::current().filePath(QStringLiteral("recovery")), **catalogue, files);
  if (!graph) {
    for (const GraphError& error : graph.error()) {
      console.writeLog(LogLevel::error, error.message);
    }
    return ExitStatus::failed;
  }
  const RunResult result = runConversion(*graph, console);
  if (result.state == GlobalParameters::RunningState::stoppedByUser) {
    return ExitStatus::interrupted;
  }
  return result.isOk() ? reportOutcome(arguments, recovery.outcome(), console) : ExitStatus::failed;
}

ExitStatus recover(const RecoverArguments& arguments) {
  Console console(arguments.isQuiet);
  if (!isColumnar(arguments.output) && tableKindOf(arguments.output) == nullptr) {
    console.writeLog(LogLevel::error, QString::fromLatin1(gel_messages::kRecoverName)
                                          .arg(textOf(arguments.output), knownTableExtensions()));
    return ExitStatus::wrongUsage;
  }
  const auto file = openGelFile(arguments.input, console, true);
  if (!file) {
    return ExitStatus::failed;
  }
  if (const std::string shared = sharedFile(*file, arguments.output); !shared.empty()) {
    console.writeLog(
        LogLevel::error,
        QString::fromLatin1(gel_messages::kRecoverOntoItself)
            .arg(textOf(arguments.input), textOf(arguments.output), textOf(shared)));
    return ExitStatus::wrongUsage;
  }
  const auto recovery = TableRecovery::open(*file);
  if (!recovery) {
    console.writeLog(LogLevel::error, QString::fromLatin1(gel_messages::kCannotOpenSide)
                                          .arg(textOf(recovery.error())));
    return ExitStatus::failed;
  }
  return writeRecovered(arguments, *file, **recovery, console);
}

}  // namespace

void addGelRecover(CLI::App& gel, ChosenCommand& chosen) {
  auto arguments = std::make_shared<RecoverArguments>();
  CLI::App* command =
      gel.add_subcommand("recover", "Rebuild one whose writer was stopped, or that is damaged");
  command->add_option("FILE", arguments->input, "the main file")->required()->type_name("");
  command
      ->add_option("OUT", arguments->output,
                   "the new table; its extension says what it becomes: cgel_kelvarin, csv, parquet "
                   "and others as for export")
      ->required()
      ->type_name("");
  addPluginOption(*command, arguments->plugin);
  addDiskWaitOption(*command, arguments->diskWaitSeconds);
  command->add_flag("--quiet", arguments->isQuiet, "only errors and warnings on standard error");
  command->footer(
      "Every block of rows is taken whose values are whole in the column-set files, whether or not "
      "the main file still describes it.\n"
      "The exit status is 0 when all that the file describes was recovered, and 1 when some of it "
      "is lost; the rest has been written then.\n\n"
      "Example:\n  kelvarin gel recover sales.cgel_kelvarin recovered.cgel_kelvarin");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return recover(*arguments); }; });
}

}  // namespace kelvarin
