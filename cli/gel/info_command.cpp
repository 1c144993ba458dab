// `kelvarin gel info`: header, columns, sets and blocks of a columnar file.
#include <cstdio>

#include <fmt/format.h>

#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/gel/table_contents.h"
#include "cli/printable_text.h"
#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

struct InfoArguments {
  std::string file;
  bool showsBlocks = false;
  bool isJson = false;
};

Json jsonOf(const BlockDescription& block) {
  Json columns = Json::array();
  for (const ColumnDescription& column : block.columns) {
    columns.push_back({{"hasNull", column.hasNull},
                       {"min", column.low},
                       {"max", column.high},
                       {"bytes", column.size}});
  }
  return {{"row", block.row}, {"rows", block.rows}, {"columns", columns}};
}

Json jsonOf(const GelFile& file, const TableContents& contents, bool withBlocks) {
  Json columns = Json::array();
  for (const std::size_t index : file.columnsInRowOrder()) {
    const GelColumn& column = file.column(index);
    columns.push_back({{"name", column.name},
                       {"meta", std::string(1, static_cast<char>(column.type))},
                       {"storage", static_cast<int>(column.storage)},
                       {"set", column.columnSet}});
  }
  Json document = {{"complete", file.isComplete()},
                   {"rows", file.isComplete() ? file.rowCount() : contents.rows},
                   {"nRowsInBlock", file.rowsInBlock()},
                   {"columns", columns},
                   {"sets", file.columnSetCount()}};
  if (withBlocks) {
    document["blocks"] = Json::array();
    for (const BlockDescription& block : contents.blocks) {
      document["blocks"].push_back(jsonOf(block));
    }
  }
  return document;
}

// A text in quotes, so that the empty one can be seen and "-" is not taken for a missing one.
std::string wordOf(const Json& value, GelType type) {
  if (value.is_null()) {
    return "-";
  }
  if (value.is_number_float()) {
    return shortestText(value.get<double>()).toStdString();
  }
  const bool isQuoted = value.is_string() && type == GelType::text;
  return value.is_string() && !isQuoted
             ? value.get<std::string>()
             : value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string lineOf(const GelColumn& column, const ColumnDescription& described) {
  return fmt::format("  {:<24} {:>10} bytes  {}{} to {}\n", printable(column.name),
                     wordOf(described.size, column.type), described.hasNull ? "nulls, " : "",
                     printable(wordOf(described.low, column.type)),
                     printable(wordOf(described.high, column.type)));
}

std::string tableOf(const GelFile& file, const TableContents& contents) {
  const auto setCount = static_cast<std::uint64_t>(file.columnSetCount());
  std::string text =
      fmt::format("{}\n  {}, {}, {} of up to {}, {}\n\n", printable(file.path()),
                  file.isComplete() ? "complete" : "incomplete",
                  counted(file.isComplete() ? file.rowCount() : contents.rows, "row").toStdString(),
                  counted(contents.blockCount, "block").toStdString(),
                  counted(file.rowsInBlock(), "row").toStdString(),
                  counted(setCount, "column set").toStdString());
  text += fmt::format("{:<6}{:<5}{:<24}{}\n", "type", "set", "storage", "column");
  const std::vector<std::size_t> order = file.columnsInRowOrder();
  for (const std::size_t index : order) {
    const GelColumn& column = file.column(index);
    text += fmt::format("{:<6}{:<5}{:<24}{}\n", static_cast<char>(column.type), column.columnSet,
                        storageWord(column.storage), printable(column.name));
  }
  for (const BlockDescription& block : contents.blocks) {
    text += fmt::format("\nrows {} to {}\n", block.row, block.row + block.rows - 1);
    for (std::size_t i = 0; i < order.size(); ++i) {
      text += lineOf(file.column(order[i]), block.columns[i]);
    }
  }
  return text;
}

ExitStatus showInfo(const InfoArguments& arguments) {
  Console console(false);
  const auto file = openGelFile(arguments.file, console, false);
  if (!file) {
    return ExitStatus::failed;
  }
  const auto contents = contentsOf(*file, arguments.showsBlocks);
  if (!contents) {
    console.writeLog(LogLevel::error,
                     gel_messages::cannotOpenSide(QString::fromStdString(contents.error())));
    return ExitStatus::failed;
  }
  const std::string text = arguments.isJson
                               ? printed(jsonOf(*file, *contents, arguments.showsBlocks))
                               : tableOf(*file, *contents);
  std::fputs(text.c_str(), stdout);
  reportDamage(*file, *contents, console);
  return contents->isDamaged() ? ExitStatus::failed : ExitStatus::done;
}

}  // namespace

void addGelInfo(CLI::App& gel, ChosenCommand& chosen) {
  auto arguments = std::make_shared<InfoArguments>();
  CLI::App* command = gel.add_subcommand("info", "Show header, columns and blocks");
  command->add_option("FILE", arguments->file, "the main file")->required()->type_name("");
  command->add_flag("--blocks", arguments->showsBlocks, "show each block with its statistics");
  command->add_flag("--json", arguments->isJson, "print one JSON object");
  command->footer(
      "Examples:\n  kelvarin gel info sales.cgel_kelvarin\n"
      "  kelvarin gel info sales.cgel_kelvarin --blocks");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return showInfo(*arguments); }; });
}

}  // namespace kelvarin
