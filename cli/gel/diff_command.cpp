// `kelvarin gel diff`: in what two columnar tables differ.
#include <cstdio>

#include "cli/gel/gel_command.h"
#include "cli/gel/messages.h"
#include "cli/gel/table_difference.h"
#include "cli/printable_text.h"
#include "cli/value_json.h"

namespace kelvarin {

namespace {

using Kind = ColumnDifference::Kind;

struct DiffArguments {
  std::string left;
  std::string right;
  bool isJson = false;
  bool isQuiet = false;
};

// Where the tables cannot be compared, as with other programs that compare.
constexpr ExitStatus kNotCompared = ExitStatus::wrongUsage;

const char* wordOf(Kind kind) {
  switch (kind) {
    case Kind::onlyLeft:
      return "onlyLeft";
    case Kind::onlyRight:
      return "onlyRight";
    case Kind::type:
      return "type";
    case Kind::storage:
      return "storage";
    case Kind::position:
      break;
  }
  return "position";
}

Json jsonOf(const TableDifference& difference) {
  Json columns = Json::array();
  for (const ColumnDifference& column : difference.columns) {
    Json object = {{"column", column.column}, {"difference", wordOf(column.kind)}};
    if (column.kind != Kind::onlyLeft && column.kind != Kind::onlyRight) {
      object["left"] = column.left;
      object["right"] = column.right;
    }
    columns.push_back(std::move(object));
  }
  Json counts = Json::object();
  for (const TableDifference::Count& count : difference.differingRows) {
    counts[count.column] = count.rows;
  }
  Json first;
  if (const auto& found = difference.first) {
    first = {{"row", found->row},
             {"column", found->column},
             {"left", Json::parse(found->leftJson)},
             {"right", Json::parse(found->rightJson)}};
  }
  return {{"equal", difference.areEqual()},
          {"rows", {difference.leftRows, difference.rightRows}},
          {"columns", columns},
          {"differingRows", counts},
          {"first", first}};
}

QString textOf(const std::string& text) {
  return QString::fromStdString(text);
}

QString lineOf(const ColumnDifference& column, const DiffArguments& arguments) {
  const QString name = textOf(column.column);
  switch (column.kind) {
    case Kind::onlyLeft:
      return gel_messages::onlyIn(name, textOf(arguments.left));
    case Kind::onlyRight:
      return gel_messages::onlyIn(name, textOf(arguments.right));
    default:
      return gel_messages::differsIn(QLatin1String(wordOf(column.kind)), name, textOf(column.left),
                                     textOf(column.right));
  }
}

QString linesOf(const TableDifference& difference, const DiffArguments& arguments) {
  if (difference.areEqual()) {
    return gel_messages::areEqual(counted(difference.leftRows, "row"));
  }
  QString lines;
  for (const ColumnDifference& column : difference.columns) {
    lines += lineOf(column, arguments);
  }
  if (difference.leftRows != difference.rightRows) {
    lines += gel_messages::rowCountsDiffer(difference.leftRows, difference.rightRows);
  }
  if (const auto& first = difference.first) {
    lines += gel_messages::firstDifference(first->row, textOf(first->column), textOf(first->left),
                                           textOf(first->right));
  }
  for (const TableDifference::Count& count : difference.differingRows) {
    lines += gel_messages::differingRows(textOf(count.column), counted(count.rows, "row"));
  }
  return lines;
}

ExitStatus compare(const DiffArguments& arguments) {
  Console console(false);
  const auto left = openGelFile(arguments.left, console);
  const auto right = openGelFile(arguments.right, console);
  if (!left || !right) {
    return kNotCompared;
  }
  const auto difference = differenceOf(*left, *right);
  if (!difference) {
    console.writeLog(LogLevel::error, gel_messages::notComparable(textOf(difference.error())));
    return kNotCompared;
  }
  if (!arguments.isQuiet) {
    const std::string text = arguments.isJson ? printed(jsonOf(*difference))
                                              : printable(linesOf(*difference, arguments));
    std::fputs(text.c_str(), stdout);
  }
  return difference->areEqual() ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace

void addGelDiff(CLI::App& gel, ChosenCommand& chosen) {
  auto arguments = std::make_shared<DiffArguments>();
  CLI::App* command = gel.add_subcommand("diff", "Tell in what two of them differ");
  command->add_option("A", arguments->left, "the main file of one")->required()->type_name("");
  command->add_option("B", arguments->right, "the main file of the other")
      ->required()
      ->type_name("");
  command->add_flag("--json", arguments->isJson, "print one JSON object");
  command->add_flag("--quiet", arguments->isQuiet, "print nothing; the exit status says it");
  command->footer(
      "Columns are compared by their names; rows count from 0.\n"
      "Exit status: 0 equal, 1 different, 2 where a table cannot be read.\n\n"
      "Examples:\n  kelvarin gel diff before.cgel_kelvarin after.cgel_kelvarin\n"
      "  kelvarin gel diff before.cgel_kelvarin after.cgel_kelvarin --json");
  command->callback([arguments, &chosen] { chosen = [arguments] { return compare(*arguments); }; });
}

}  // namespace kelvarin
