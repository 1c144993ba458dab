// `kelvarin gel import`: a columnar file made of a CSV, Parquet or Arrow file.
#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/gel/table_conversion.h"
#include "cli/table_kind.h"
#include "columnar/codecs/chunk_codec.h"
#include "columnar/files/table_files.h"
#include "columnar/format/file_names.h"

namespace kelvarin {

namespace {

// Larger blocks make files smaller, but ranges slower; by the figures of benchmarks/README.md.
constexpr std::uint32_t kRowsInBlock = 20'000;

struct Import : TableConversion {
  std::uint32_t rowsInBlock = kRowsInBlock;
};

// With the extension of main files, which keeps side files of different tables apart, unless there
// is a table of that very name.
std::string nameOfTable(const std::string& path) {
  const bool isMainFileName =
      QString::fromStdString(path).endsWith(QLatin1String(kMainFileExtension), Qt::CaseInsensitive);
  return isMainFileName || isColumnarFile(path) ? path : path + std::string(kMainFileExtension);
}

ExitStatus refuse(Console& console, const QString& text) {
  console.writeLog(LogLevel::error, text);
  return ExitStatus::wrongUsage;
}

void reportRows(const TableConversion& conversion, std::uint64_t rows, Console& console) {
  const QString output = QString::fromStdString(conversion.output);
  if (rows == 0) {
    console.writeLog(LogLevel::warning,
                     gel_messages::noRows(QString::fromStdString(conversion.input), output));
    return;
  }
  console.writeLog(LogLevel::information, gel_messages::written(counted(rows, "row"), output));
}

ExitStatus importTable(Import conversion) {
  Console console(conversion.options.isQuiet);
  const TableKind* kind = tableKindOf(conversion.input);
  if (kind == nullptr || kind->isColumnar()) {
    return refuse(console, gel_messages::unknownExtension(QString::fromStdString(conversion.input),
                                                          knownTableExtensions()));
  }
  // Most likely the names have been swapped, and a table would be lost.
  const TableKind* outputKind = tableKindOf(conversion.output);
  if (outputKind != nullptr && !outputKind->isColumnar()) {
    return refuse(console,
                  gel_messages::nameOfAnotherKind(QString::fromStdString(conversion.output)));
  }
  conversion.output = nameOfTable(conversion.output);
  if (wouldReplaceItself(conversion, console)) {
    return ExitStatus::wrongUsage;
  }
  ConversionGraph graph{
      .source = kind->readElement(QStringLiteral("input")),
      .sink = tableKindNamed("gel")->writeElement(
          QStringLiteral("output"),
          QStringLiteral("replaceAtEnd='1' nRowsInBlock='%1'").arg(conversion.rowsInBlock)),
      .ownAction = nullptr};
  return runConversion(conversion, std::move(graph), console, [&](const RunResult& result) {
    reportRows(conversion, rowsWritten(result), console);
    return ExitStatus::done;
  });
}

}  // namespace

void addGelImport(CLI::App& gel, ChosenCommand& chosen) {
  auto conversion = std::make_shared<Import>();
  CLI::App* command = gel.add_subcommand("import", "Make one of a CSV, Parquet or Arrow file");
  command->add_option("IN", conversion->input, "its extension says what it is")
      ->required()
      ->type_name("");
  command
      ->add_option("FILE", conversion->output,
                   "the main file; .cgel_kelvarin is appended where it is missing")
      ->required()
      ->type_name("");
  command
      ->add_option("--rows-in-block", conversion->rowsInBlock,
                   "more: smaller files; fewer: faster ranges, less memory")
      ->check(CLI::Range(std::uint32_t{1}, kMaxRowsInBlock))
      ->type_name("N")
      ->capture_default_str();
  command->footer(
      "Examples:\n  kelvarin gel import sales.csv sales.cgel_kelvarin\n"
      "  kelvarin gel import sales.csv sales.cgel_kelvarin --threads 2");
  conversion->options.addTo(*command);
  command->callback(
      [conversion, &chosen] { chosen = [conversion] { return importTable(*conversion); }; });
}

}  // namespace kelvarin
