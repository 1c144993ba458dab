// `kelvarin calc`: computes and filters the rows of a table by expressions on the command line.
#include "cli/calc/calc_request.h"
#include "cli/calc/calc_run.h"
#include "cli/commands.h"
#include "cli/expression_options.h"

namespace kelvarin {

namespace {

ExitStatus calculate(const CalcArguments& arguments) {
  Console console(arguments.run.isQuiet);
  const auto request = requestOf(arguments);
  if (!request) {
    console.writeLog(LogLevel::error, request.error());
    return ExitStatus::wrongUsage;
  }
  if (wouldReplaceItself(request->conversion, console)) {
    return ExitStatus::wrongUsage;
  }
  return CalcRun(*request, console).run();
}

}  // namespace

void addCalcCommand(CLI::App& program, ChosenCommand& chosen) {
  auto arguments = std::make_shared<CalcArguments>();
  CLI::App* command = program.add_subcommand("calc", "Compute over a table, without a graph file");
  command
      ->add_option("OUTPUT", arguments->positionals,
                   "NAME[:TYPE]=EXPRESSION each; and the FILE to read [standard input]")
      ->type_name("");
  command->add_option("-i,--input", arguments->input, "the file to read, whatever its name")
      ->type_name("FILE");
  command->add_option("-o,--output", arguments->output, "the file to write [standard output]")
      ->type_name("FILE");
  const CLI::IsMember kinds({"csv", "tsv", "parquet", "arrow", "gel"});
  command
      ->add_option("--from", arguments->inputKind,
                   "what is read: csv, tsv, parquet, arrow or gel [by its extension, else csv]")
      ->check(kinds)
      ->option_text("KIND");
  command->add_option("--to", arguments->outputKind, "what is written; gel is a columnar file")
      ->check(kinds)
      ->option_text("KIND");
  command
      ->add_option("--split-by", arguments->splitColumn,
                   "a file for each value of the column, in a folder that is made")
      ->type_name("COLUMN");
  command
      ->add_option("--store", arguments->storedTypes,
                   "a column's type in a Parquet or Arrow file, as int64")
      ->allow_extra_args(false)
      ->type_name("COLUMN=TYPE");
  command->add_option("--filter", arguments->filters, "keep the rows for which it is true")
      ->allow_extra_args(false)
      ->type_name("EXPRESSION");
  command->add_option("--set", arguments->settings, "a value that expressions know by its name")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
  command->add_option("--date", arguments->dates, "a column of texts that are dates, see --opt")
      ->allow_extra_args(false)
      ->type_name("COLUMN");
  addExpressionOptions(*command, arguments->options);
  CLI::Option* save =
      command->add_option("--save", arguments->graph, "keep what is done as a graph file")
          ->type_name("GRAPH");
  command->add_flag("--no-run", arguments->isOnlySaved, "save the graph and do no more")
      ->needs(save);
  arguments->source.addTo(*command);
  arguments->run.addTo(*command);
  arguments->run.reports.addTo(*command);
  command->footer(
      "Examples:\n"
      "  kelvarin calc 'total=price*quantity' orders.csv --filter 'total >= 40'\n"
      "  kelvarin calc '`km/h`=`distance in km`/hours' trips.parquet -o speeds.csv");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return calculate(*arguments); }; });
}

}  // namespace kelvarin
