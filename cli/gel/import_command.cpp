// `kelvarin gel import`: a columnar file made of a CSV, Parquet or Arrow file.
#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/gel/table_conversion.h"
#include "cli/source_options.h"
#include "cli/table_kind.h"
#include "columnar/codecs/chunk_codec.h"

namespace kelvarin {

namespace {

struct Import : TableConversion {
  std::string kind;
  SourceOptions source;
  std::uint32_t rowsInBlock = kRowsInBlock;
};

ExitStatus refuse(Console& console, const QString& text) {
  console.writeLog(LogLevel::error, text);
  return ExitStatus::wrongUsage;
}

ExitStatus importTable(Import conversion) {
  Console console(conversion.options.isQuiet);
  const TableKind* kind =
      conversion.kind.empty() ? tableKindToRead(conversion.input) : tableKindNamed(conversion.kind);
  if (kind == nullptr || kind->isColumnar()) {
    return refuse(console, gel_messages::unknownExtension(QString::fromStdString(conversion.input),
                                                          knownTableExtensions()));
  }
  if (const QString fault = conversion.source.fault(*kind, conversion.input); !fault.isEmpty()) {
    return refuse(console, fault);
  }
  // Most likely the names have been swapped, and a table would be lost.
  const TableKind* outputKind = tableKindOf(conversion.output);
  if (outputKind != nullptr && !outputKind->isColumnar()) {
    return refuse(console,
                  gel_messages::nameOfAnotherKind(QString::fromStdString(conversion.output)));
  }
  conversion.output = nameOfColumnarTable(conversion.output);
  if (wouldReplaceItself(conversion, console)) {
    return ExitStatus::wrongUsage;
  }
  ConversionGraph graph{.source = conversion.source.element(*kind, QLatin1String(kSourceAction)),
                        .sink = columnarSinkElement(conversion.rowsInBlock)};
  return runConversion(conversion, std::move(graph), console, [&](const RunResult& result) {
    reportRows(conversion, *tableKindNamed("gel"), result, console);
    return ExitStatus::done;
  });
}

}  // namespace

void addGelImport(CLI::App& gel, ChosenCommand& chosen) {
  auto conversion = std::make_shared<Import>();
  CLI::App* command = gel.add_subcommand("import", "Make one of a CSV, Parquet or Arrow file");
  command
      ->add_option(
          "IN", conversion->input,
          "its extension says what it is; a pattern such as 'data/*.csv'; - is standard input")
      ->required()
      ->type_name("");
  command
      ->add_option("FILE", conversion->output,
                   "the main file; .cgel_kelvarin is appended where it is missing")
      ->required()
      ->type_name("");
  command
      ->add_option("--from", conversion->kind, "csv, tsv, parquet or arrow, whatever the extension")
      ->check(CLI::IsMember({"csv", "tsv", "parquet", "arrow"}))
      ->type_name("KIND");
  command
      ->add_option("--rows-in-block", conversion->rowsInBlock,
                   "more: smaller files; fewer: faster ranges, less memory")
      ->check(CLI::Range(std::uint32_t{1}, kMaxRowsInBlock))
      ->type_name("N")
      ->capture_default_str();
  command->footer(
      "Examples:\n  kelvarin gel import sales.csv sales.cgel_kelvarin\n"
      "  zcat old.csv.gz | kelvarin gel import - old --from csv --decimal ,");
  conversion->source.addTo(*command);
  conversion->options.addTo(*command);
  command->callback(
      [conversion, &chosen] { chosen = [conversion] { return importTable(*conversion); }; });
}

}  // namespace kelvarin
