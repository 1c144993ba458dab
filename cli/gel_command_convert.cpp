// `kelvarin gel export` and `gel import`: a columnar file to and from CSV, Parquet or Arrow.
//
// Each is a run of a graph of two actions, so that messages, full disks and interrupts are those of
// any run.
#include <algorithm>

#include <QDir>
#include <QFileInfo>

#include "cli/gel_command.h"
#include "cli/gel_command_messages.h"
#include "cli/graph_session.h"
#include "cli/interrupt.h"
#include "cli/messages.h"
#include "cli/program_services.h"
#include "cli/progress_line.h"
#include "columnar/files/table_files.h"
#include "columnar/format/file_names.h"
#include "host/engine/graph_reader.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

namespace {

using State = GlobalParameters::RunningState;

constexpr TableKind kKinds[] = {
    {"csv", "CSV", ""},     {"tsv", "CSV", "separator='\\t'"},
    {"txt", "CSV", ""},     {"parquet", "Parquet", ""},
    {"arrow", "Arrow", ""}, {"feather", "Arrow", ""},
    {"ipc", "Arrow", ""},
};

struct Conversion {
  std::string input;
  std::string output;
  std::string plugin;
  int diskWaitSeconds = 60;
  bool isQuiet = false;
  bool readsDamaged = false;  // of an export
  bool isExport = false;
};

constexpr char kStandardOutput[] = "-";  // takes CSV

const TableKind* kindOfTable(const Conversion& conversion) {
  const bool isPiped = conversion.isExport && conversion.output == kStandardOutput;
  return isPiped ? &kKinds[0]
                 : tableKindOf(conversion.isExport ? conversion.output : conversion.input);
}

// With the extension of main files, which keeps side files of different tables apart, unless there is
// a table of that very name.
std::string nameOfTable(const std::string& path) {
  const bool isNamedSo =
      QString::fromStdString(path).endsWith(QLatin1String(kMainFileExtension),
                                            Qt::CaseInsensitive) ||
      isColumnarFile(path);
  return isNamedSo ? path : path + std::string(kMainFileExtension);
}

// Most likely the names have been swapped, and a table would be lost.
bool isForAnotherKind(const Conversion& conversion) {
  return !conversion.isExport && tableKindOf(conversion.output) != nullptr;
}

// The file names are parameters, so that nothing in them is taken for a part of the document.
QByteArray graphOf(const Conversion& conversion, const TableKind& other) {
  const QString table =
      QStringLiteral("<%1%2 name='%3' file='${%3}' %4/>")
          .arg(conversion.isExport ? QStringLiteral("Write") : QStringLiteral("Read"),
               QString::fromLatin1(other.action),
               conversion.isExport ? QStringLiteral("output") : QStringLiteral("input"),
               QString::fromLatin1(other.attributes));
  const QString gel =
      conversion.isExport
          ? QStringLiteral("<ReadColumnarGel name='input' fileName='${input}' %1/>")
                .arg(conversion.readsDamaged
                         ? QStringLiteral("readIncompleteFile='1' skipCorruptedBlocks='1'")
                         : QString())
          : QStringLiteral("<writeColumnarGel name='output' file='${output}' replaceAtEnd='1'/>");
  return QStringLiteral(
             "<KelvarinGraph version='1.0'><Parameters><Parameter name='input' value=''/>"
             "<Parameter name='output' value=''/></Parameters><Actions>%1%2</Actions>"
             "<Links><Link from='input' to='output'/></Links></KelvarinGraph>")
      .arg(gel, table)
      .toUtf8();
}

QString absolute(const std::string& path) {
  return path == kStandardOutput ? QString::fromStdString(path)
                                 : QDir::current().absoluteFilePath(QString::fromStdString(path));
}

// Files that are made of themselves would be lost.
bool isOneFile(const Conversion& conversion) {
  const QString input = QFileInfo(QString::fromStdString(conversion.input)).canonicalFilePath();
  return !input.isEmpty() &&
         input == QFileInfo(QString::fromStdString(conversion.output)).canonicalFilePath();
}

void tellOutcome(const Conversion& conversion, const RunResult& result, Console& console) {
  const QString input = QString::fromStdString(conversion.input);
  const QString output = QString::fromStdString(conversion.output);
  const auto sink = std::find_if(result.actions.begin(), result.actions.end(),
                                 [](const ActionResult& action) { return !action.rowsIn.empty(); });
  const long long rows = sink->rowsIn.front();
  if (conversion.output == kStandardOutput) {
    return;
  }
  if (rows == 0 && !conversion.isExport) {
    console.writeLog(LogLevel::warning,
                     QString::fromLatin1(gel_messages::kNoRows).arg(input, output));
  } else {
    const std::string count = counted(static_cast<std::uint64_t>(rows), "row");
    console.writeLog(
        LogLevel::information,
        QString::fromLatin1(gel_messages::kWritten).arg(QString::fromStdString(count), output));
  }
}

ExitStatus run(Graph& graph, const Conversion& conversion, Console& console) {
  const RunResult result = runConversion(graph, console);
  if (result.state == State::stoppedByUser) {
    return ExitStatus::interrupted;
  }
  if (!result.isOk()) {
    return ExitStatus::failed;
  }
  tellOutcome(conversion, result, console);
  return ExitStatus::done;
}

ExitStatus convert(Conversion conversion) {
  Console console(conversion.isQuiet);
  const TableKind* kind = kindOfTable(conversion);
  if (kind == nullptr) {
    const std::string& other = conversion.isExport ? conversion.output : conversion.input;
    console.writeLog(LogLevel::error,
                     QString::fromLatin1(gel_messages::kUnknownExtension)
                         .arg(QString::fromStdString(other), knownTableExtensions()));
    return ExitStatus::wrongUsage;
  }
  if (isForAnotherKind(conversion)) {
    console.writeLog(LogLevel::error, QString::fromLatin1(gel_messages::kNameOfAnotherKind)
                                          .arg(QString::fromStdString(conversion.output)));
    return ExitStatus::wrongUsage;
  }
  if (!conversion.isExport) {
    conversion.output = nameOfTable(conversion.output);
  }
  if (isOneFile(conversion)) {
    console.writeLog(
        LogLevel::error,
        QString::fromLatin1(gel_messages::kSameFile).arg(QString::fromStdString(conversion.input)));
    return ExitStatus::wrongUsage;
  }
  const ProgramServices services(console, conversion.diskWaitSeconds);
  auto catalogue = loadCatalogue(conversion.plugin);
  if (!catalogue) {
    console.writeLog(LogLevel::error, catalogue.error());
    return ExitStatus::failed;
  }
  const std::vector<ParameterOverride> files{
      {QStringLiteral("input"), absolute(conversion.input)},
      {QStringLiteral("output"), absolute(conversion.output)}};
  auto graph =
      parseGraph(graphOf(conversion, *kind), QDir::current().filePath(QStringLiteral("conversion")),
                 **catalogue, files);
  if (!graph) {
    for (const GraphError& error : graph.error()) {
      console.writeLog(LogLevel::error, error.message);
    }
    return ExitStatus::failed;
  }
  return run(*graph, conversion, console);
}

void addConversion(CLI::App& command, const std::shared_ptr<Conversion>& conversion,
                   ChosenCommand& chosen) {
  addPluginOption(command, conversion->plugin);
  addDiskWaitOption(command, conversion->diskWaitSeconds);
  command.add_flag("--quiet", conversion->isQuiet, "only errors and warnings on standard error");
  command.callback(
      [conversion, &chosen] { chosen = [conversion] { return convert(*conversion); }; });
}

}  // namespace

const TableKind* tableKindOf(const std::string& path) {
  const QString extension = QFileInfo(QString::fromStdString(path)).suffix().toLower();
  for (const TableKind& kind : kKinds) {
    if (extension == QLatin1String(kind.extension)) {
      return &kind;
    }
  }
  return nullptr;
}

QString knownTableExtensions() {
  QStringList extensions;
  for (const TableKind& kind : kKinds) {
    extensions += QString::fromLatin1(kind.extension);
  }
  return extensions.join(QStringLiteral(", "));
}

RunResult runConversion(Graph& graph, Console& console) {
  RunRecord record;
  const InterruptibleRun interruptible(record);
  ProgressLine progress(console);
  ExecutionOptions options;
  if (console.showsProgress()) {
    options.progress = [&progress](const RunProgress& now) { progress.show(now); };
  }
  RunResult result = runGraph(graph, record, options);
  console.clearProgress();
  if (result.state == State::stoppedByUser) {
    console.writeLog(LogLevel::warning, QString::fromLatin1(program_messages::kInterrupted));
  }
  return result;
}

void addGelConversions(CLI::App& gel, ChosenCommand& chosen) {
  auto exported = std::make_shared<Conversion>();
  exported->isExport = true;
  CLI::App* command = gel.add_subcommand("export", "Write it as CSV, Parquet or Arrow");
  command->add_option("FILE", exported->input, "the main file")->required()->type_name("");
  command
      ->add_option("OUT", exported->output,
                   "its extension says what it becomes; - is standard output, as CSV")
      ->required()
      ->type_name("");
  command->add_flag("--salvage", exported->readsDamaged,
                    "take what can be read of an incomplete or damaged file; 'gel recover' finds "
                    "more of one whose descriptors are lost");
  command->footer("Example:\n  kelvarin gel export sales.cgel_kelvarin sales.parquet");
  addConversion(*command, exported, chosen);

  auto imported = std::make_shared<Conversion>();
  command = gel.add_subcommand("import", "Make one of a CSV, Parquet or Arrow file");
  command->add_option("IN", imported->input, "its extension says what it is")
      ->required()
      ->type_name("");
  command
      ->add_option("FILE", imported->output,
                   "the main file; .cgel_kelvarin is appended where it is missing")
      ->required()
      ->type_name("");
  command->footer("Example:\n  kelvarin gel import sales.csv sales.cgel_kelvarin");
  addConversion(*command, imported, chosen);
}

}  // namespace kelvarin
