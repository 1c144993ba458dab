// `kelvarin stats`: what the columns of a table hold.
#include <cstdio>

#include "cli/gel/gel_command.h"
#include "cli/look/look_command.h"
#include "cli/look/looked_table.h"
#include "cli/look/messages.h"
#include "cli/look/statistics_taker.h"
#include "cli/look/statistics_text.h"
#include "cli/printable_text.h"

namespace kelvarin {

namespace {

struct StatsArguments {
  LookedTable table;
  RowFormatOption form;
};

void print(const StatsArguments& arguments, StatisticsTaker& taker) {
  const std::vector<ColumnSummary> columns = taker.summaries();
  const ResultTable table = statisticsTable(taker.names(), columns);
  const RowFormat format = arguments.form.format();
  table.print(format);
  if (format != RowFormat::table) {
    return;
  }
  const QString remarks = remarksOn(columns, taker.distinctBound());
  const QString rows = counted(columns.empty() ? 0 : columns.front().rows, "row");
  std::printf(
      "\n%s\n%s%s",
      printable(look_messages::rowsOf(rows, QString::fromStdString(arguments.table.file))).c_str(),
      qUtf8Printable(remarks), remarks.isEmpty() ? "" : "\n");
}

ExitStatus showStatistics(const StatsArguments& arguments) {
  Console console(arguments.table.options.isQuiet);
  StatisticsTaker taker;
  return runOverTable(arguments.table, taker, console, {}, [&](const RunResult&) {
    print(arguments, taker);
    return ExitStatus::done;
  });
}

}  // namespace

void addStatsCommand(CLI::App& program, ChosenCommand& chosen) {
  auto arguments = std::make_shared<StatsArguments>();
  CLI::App* command = program.add_subcommand("stats", "Tell what the columns of a table hold");
  arguments->form.addTo(*command);
  arguments->table.addTo(*command);
  command->footer(
      "Missing and distinct values, bounds, mean, quartiles, the longest text in characters\n"
      "and the most frequent value of each column. What is estimated has a ~ in front.\n\n"
      "Examples:\n  kelvarin stats sales.csv\n  kelvarin stats sales.parquet --format json");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return showStatistics(*arguments); }; });
}

}  // namespace kelvarin
