// `kelvarin gel stats`: what a columnar file itself says of the values in its blocks.
#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/gel/table_contents.h"
#include "cli/result_table.h"

namespace kelvarin {

namespace {

struct StatsArguments {
  std::string file;
  RowFormatOption form;
};

ResultTable tableOf(const GelFile& file, const TableContents& contents) {
  ResultTable table({{"row", "row", true},
                     {"rows", "rows", true},
                     {"column", "column"},
                     {"nulls", "nulls"},
                     {"min", "min", true},
                     {"max", "max", true},
                     {"bytes", "bytes", true}});
  constexpr std::size_t kMin = 4;
  constexpr std::size_t kMax = 5;
  const std::vector<std::size_t> order = file.columnsInRowOrder();
  for (const BlockDescription& block : contents.blocks) {
    for (std::size_t i = 0; i < order.size(); ++i) {
      const ColumnDescription& column = block.columns[i];
      table.add({block.row, block.rows, file.column(order[i]).name, column.hasNull, column.low,
                 column.high, column.size});
      if (file.column(order[i]).type == GelType::text && !column.low.is_null()) {
        table.show(kMin, cellOfText(column.low.get<std::string>()));
      }
      if (file.column(order[i]).type == GelType::text && !column.high.is_null()) {
        table.show(kMax, cellOfText(column.high.get<std::string>()));
      }
    }
  }
  return table;
}

ExitStatus showStatistics(const StatsArguments& arguments) {
  Console console(false);
  const auto file = openGelFile(arguments.file, console);
  if (!file) {
    return ExitStatus::failed;
  }
  const auto contents = contentsOf(*file, true);
  if (!contents) {
    console.writeLog(LogLevel::error,
                     gel_messages::cannotOpenSide(QString::fromStdString(contents.error())));
    return ExitStatus::failed;
  }
  tableOf(*file, *contents).print(arguments.form.format());
  reportDamage(*file, *contents, console);
  return contents->isDamaged() ? ExitStatus::failed : ExitStatus::done;
}

}  // namespace

void addGelStats(CLI::App& gel, ChosenCommand& chosen) {
  auto arguments = std::make_shared<StatsArguments>();
  CLI::App* command =
      gel.add_subcommand("stats", "List the statistics that the file has of blocks");
  command->add_option("FILE", arguments->file, "the main file")->required()->type_name("");
  arguments->form.addTo(*command);
  command->footer(
      "Block filters decide by these which blocks are read. 'kelvarin stats' computes from "
      "all values.\n\n"
      "Examples:\n  kelvarin gel stats sales.cgel_kelvarin\n"
      "  kelvarin gel stats sales.cgel_kelvarin --format csv");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return showStatistics(*arguments); }; });
}

}  // namespace kelvarin
