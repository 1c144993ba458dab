// `kelvarin gel export`: a columnar file as CSV, Parquet or Arrow.
#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/gel/table_conversion.h"
#include "cli/table_kind.h"

namespace kelvarin {

namespace {

struct ExportArguments {
  TableConversion conversion;
  bool readsDamaged = false;
};

QString sourceElement(const ExportArguments& arguments) {
  return tableKindNamed("gel")->readElement(
      QLatin1String(kSourceAction),
      arguments.readsDamaged ? QStringLiteral("readIncompleteFile='1' skipCorruptedBlocks='1'")
                             : QString());
}

ExitStatus exportTable(const ExportArguments& arguments) {
  const TableConversion& conversion = arguments.conversion;
  Console console(conversion.options.isQuiet);
  const TableKind* kind = conversion.isPiped() ? &csvKind() : tableKindOf(conversion.output);
  if (kind == nullptr || kind->isColumnar()) {
    console.writeLog(LogLevel::error,
                     gel_messages::unknownExtension(QString::fromStdString(conversion.output),
                                                    knownTableExtensions()));
    return ExitStatus::wrongUsage;
  }
  if (wouldReplaceItself(conversion, console)) {
    return ExitStatus::wrongUsage;
  }
  ConversionGraph graph{.source = sourceElement(arguments), .sink = sinkElement(*kind)};
  return runConversion(conversion, std::move(graph), console, [&](const RunResult& result) {
    reportRows(conversion, *kind, result, console);
    return ExitStatus::done;
  });
}

}  // namespace

void addGelExport(CLI::App& gel, ChosenCommand& chosen) {
  auto arguments = std::make_shared<ExportArguments>();
  CLI::App* command = gel.add_subcommand("export", "Write it as CSV, Parquet or Arrow");
  command->add_option("FILE", arguments->conversion.input, "the main file")
      ->required()
      ->type_name("");
  command
      ->add_option("OUT", arguments->conversion.output,
                   "its extension says what it becomes; - is standard output, as CSV")
      ->required()
      ->type_name("");
  command->add_flag("--salvage", arguments->readsDamaged,
                    "take what can be read of an incomplete or damaged file; 'gel recover' finds "
                    "more of one whose descriptors are lost");
  command->footer(
      "Examples:\n  kelvarin gel export sales.cgel_kelvarin sales.parquet\n"
      "  kelvarin gel export sales.cgel_kelvarin sales.csv --quiet");
  arguments->conversion.options.addTo(*command);
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return exportTable(*arguments); }; });
}

}  // namespace kelvarin
