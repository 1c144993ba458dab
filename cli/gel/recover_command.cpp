// `kelvarin gel recover`: a new table from what is left of one whose writer was stopped, or whose
// descriptors are damaged.
#include <filesystem>

#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/gel/recovered_table.h"
#include "cli/gel/table_conversion.h"
#include "cli/table_kind.h"
#include "columnar/format/file_names.h"

namespace kelvarin {

namespace {

QString textOf(const std::string& text) {
  return QString::fromStdString(text);
}

bool isColumnar(const std::string& path) {
  return tableKindOf(path)->isColumnar();
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
  const auto outputs =
      isColumnar(output) ? filesOf(output, kMaxColumnSets) : std::vector<std::string>{output};
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

// As it was: its blocks have as many rows.
QString sinkOf(const GelFile& file, const TableKind& kind) {
  return kind.isColumnar()
             ? kind.writeElement(QLatin1String(kSinkAction),
                                 QStringLiteral("nRowsInBlock='%1'").arg(file.rowsInBlock()))
             : sinkElement(kind);
}

// What was recovered and what was not; the result says whether that is all.
ExitStatus reportOutcome(const TableConversion& conversion, const RecoveryOutcome& outcome,
                         Console& console) {
  const auto log = [&](LogLevel level, const QString& text) { console.writeLog(level, text); };
  const QString input = textOf(conversion.input);
  if (outcome.rows > 0) {
    log(LogLevel::information,
        gel_messages::recovered(counted(outcome.rows, "row"), counted(outcome.blocks, "block"),
                                textOf(conversion.output)));
  } else {
    log(LogLevel::error, gel_messages::nothingRecovered(input, textOf(conversion.output)));
  }
  if (outcome.foundBlocks > 0) {
    log(LogLevel::information, gel_messages::foundBlocks(counted(outcome.foundBlocks, "block")));
  }
  if (outcome.lostBlocks > 0 || outcome.lostRows > 0) {
    log(LogLevel::warning, gel_messages::lost(counted(outcome.lostBlocks, "block"),
                                              counted(outcome.lostRows, "row"), input));
  }
  if (outcome.hasUncountedLoss) {
    log(LogLevel::warning, gel_messages::lostUncounted(input));
  }
  if (outcome.hasUnfinished) {
    log(LogLevel::information, gel_messages::unfinished(input));
  }
  return outcome.rows > 0 && !outcome.hasLoss() ? ExitStatus::done : ExitStatus::failed;
}

ExitStatus writeRecovered(const TableConversion& conversion, const GelFile& file,
                          TableRecovery& recovery, Console& console) {
  ConversionGraph graph{
      .source = QStringLiteral("<%1 name='%2'/>")
                    .arg(QLatin1String(RecoveredTable::kTypeName), QLatin1String(kSourceAction)),
      .sink = sinkOf(file, *tableKindOf(conversion.output)),
      .ownAction = std::make_unique<RecoveredTable>(XMLNode::emptyNode(), nullptr, file, recovery)};
  return runConversion(conversion, std::move(graph), console, [&](const RunResult&) {
    return reportOutcome(conversion, recovery.outcome(), console);
  });
}

ExitStatus recover(const TableConversion& conversion) {
  Console console(conversion.options.isQuiet);
  if (tableKindOf(conversion.output) == nullptr) {
    console.writeLog(LogLevel::error,
                     gel_messages::recoverName(textOf(conversion.output), knownTableExtensions()));
    return ExitStatus::wrongUsage;
  }
  const auto file = openGelFile(conversion.input, console, false);
  if (!file) {
    return ExitStatus::failed;
  }
  if (const std::string shared = sharedFile(*file, conversion.output); !shared.empty()) {
    console.writeLog(LogLevel::error,
                     gel_messages::recoverOntoItself(textOf(conversion.input),
                                                     textOf(conversion.output), textOf(shared)));
    return ExitStatus::wrongUsage;
  }
  const auto recovery = TableRecovery::open(*file);
  if (!recovery) {
    console.writeLog(LogLevel::error, gel_messages::cannotOpenSide(textOf(recovery.error())));
    return ExitStatus::failed;
  }
  return writeRecovered(conversion, *file, **recovery, console);
}

}  // namespace

void addGelRecover(CLI::App& gel, ChosenCommand& chosen) {
  auto conversion = std::make_shared<TableConversion>();
  CLI::App* command =
      gel.add_subcommand("recover", "Rebuild one whose writer was stopped, or that is damaged");
  command->add_option("FILE", conversion->input, "the main file")->required()->type_name("");
  command
      ->add_option("OUT", conversion->output,
                   "the new table; its extension says what it becomes: cgel_kelvarin, csv, parquet "
                   "and others as for export")
      ->required()
      ->type_name("");
  conversion->options.addTo(*command);
  command->footer(
      "Every block of rows is taken whose values are whole in the column-set files, whether or\n"
      "not the main file still describes it. The exit status is 0 when all that the file\n"
      "describes was recovered, and 1 when some is lost; the rest has been written then.\n\n"
      "Examples:\n  kelvarin gel recover sales.cgel_kelvarin recovered.cgel_kelvarin\n"
      "  kelvarin gel recover sales.cgel_kelvarin recovered.csv");
  command->callback(
      [conversion, &chosen] { chosen = [conversion] { return recover(*conversion); }; });
}

}  // namespace kelvarin
