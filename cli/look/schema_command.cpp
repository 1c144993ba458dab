// `kelvarin schema`: the columns of a table, or of every output of a graph's actions.
#include <QFile>
#include <QFileInfo>

#include "cli/gel/gel_command.h"
#include "cli/graph_session.h"
#include "cli/look/look_command.h"
#include "cli/look/looked_table.h"
#include "cli/result_table.h"
#include "columnar/reader/block_scan.h"

namespace kelvarin {

namespace {

struct SchemaArguments {
  LookedTable table;
  std::vector<std::string> settings;
  RowFormatOption form;
};

// "ascending" and the like; null where the column is none of the order's.
Json orderOf(int column, const QVector<SortInfos>& order) {
  for (qsizetype i = 0; i < order.size(); ++i) {
    if (order[i].column() == column) {
      const std::string number = order.size() > 1 ? std::to_string(i + 1) + ". " : "";
      return number + (order[i].isDescending() ? "descending" : "ascending");
    }
  }
  return nullptr;
}

template <typename Statistics>
bool hasNullIn(const DescriptorLayout& layout, const unsigned char* descriptor,
               std::size_t column) {
  Statistics statistics;
  return layout.readStatistics(descriptor, column, statistics) && statistics.hasNull;
}

bool hasNullIn(const GelFile& file, const unsigned char* descriptor, std::size_t column) {
  const DescriptorLayout& layout = file.descriptorLayout();
  switch (file.column(column).type) {
    case GelType::key:
      return hasNullIn<KeyStatistics>(layout, descriptor, column);
    case GelType::number:
      return hasNullIn<NumberStatistics>(layout, descriptor, column);
    case GelType::text:
      break;
  }
  return hasNullIn<TextStatistics>(layout, descriptor, column);
}

// Whether each column of the rows has missing values, as the blocks of the file say; empty where
// they do not say it of all rows.
std::vector<Json> columnsWithNulls(const std::string& path) {
  const auto file = GelFile::open(path, IncompleteFiles::refuse);
  if (!file) {
    return {};
  }
  const std::vector<std::size_t> order = (*file)->columnsInRowOrder();
  std::vector<bool> hasNulls(order.size(), false);
  BlockScan scan(**file);
  BlockInfo block;
  BlockScan::Step step = scan.next(block);
  for (; step == BlockScan::Step::block; step = scan.next(block)) {
    for (std::size_t i = 0; i < order.size(); ++i) {
      hasNulls[i] = hasNulls[i] || hasNullIn(**file, block.descriptor, order[i]);
    }
  }
  return step == BlockScan::Step::end ? std::vector<Json>(hasNulls.begin(), hasNulls.end())
                                      : std::vector<Json>();
}

ExitStatus showTable(const SchemaArguments& arguments, Console& console) {
  const TableKind* kind = arguments.table.kind(console);
  if (kind == nullptr) {
    return ExitStatus::wrongUsage;
  }
  return checkTable(arguments.table, console, [&](const RunResult& result) {
    const ActionResult& source = result.actions.front();
    const auto& columns = source.pins.front().columns;
    std::vector<Json> nulls;
    if (kind->isColumnar()) {
      nulls = columnsWithNulls(arguments.table.file);
    }
    nulls.resize(columns.size());
    ResultTable table(
        {{"column", "name"}, {"type", "type"}, {"nulls", "nulls"}, {"sorted", "sorted"}});
    for (std::size_t i = 0; i < columns.size(); ++i) {
      table.add({columns[i].name.toStdString(), typeWord(columns[i].meta), nulls[i],
                 orderOf(static_cast<int>(i), source.sortOrders.front())});
    }
    table.print(arguments.form.format());
    return ExitStatus::done;
  });
}

void printGraph(const RunResult& result, RowFormat format) {
  ResultTable table({{"action", "action"},
                     {"output", "output", true},
                     {"column", "name"},
                     {"type", "type"},
                     {"sorted", "sorted"}});
  for (const ActionResult& action : result.actions) {
    for (std::size_t pin = 0; pin < action.pins.size(); ++pin) {
      const auto& columns = action.pins[pin].columns;
      for (std::size_t i = 0; i < columns.size(); ++i) {
        table.add({action.name.toStdString(), pin, columns[i].name.toStdString(),
                   typeWord(columns[i].meta),
                   orderOf(static_cast<int>(i), action.sortOrders[pin])});
      }
    }
  }
  table.print(format);
}

// Of a graph that was read; what cannot be known of it is in the log.
ExitStatus showGraph(const SchemaArguments& arguments) {
  GraphArguments graph;
  graph.graph = arguments.table.file;
  graph.settings = arguments.settings;
  graph.options = arguments.table.options;
  const RowFormat format = arguments.form.format();
  return workOnGraph(
      graph, checkGraph,
      [format](const GraphArguments&, const RunResult& result, Console&) {
        if (!result.actions.empty()) {
          printGraph(result, format);
        }
      },
      jsonOfCheck);
}

bool isGraph(const LookedTable& table) {
  const QString path = QString::fromStdString(table.file);
  if (!table.from.empty() || tableKindToRead(table.file) != nullptr) {
    return false;
  }
  QFile file(path);
  return QFileInfo(path).suffix() == QLatin1String("kelvarin") ||
         (file.open(QIODevice::ReadOnly) && file.read(1) == "<");
}

ExitStatus showSchema(const SchemaArguments& arguments) {
  if (isGraph(arguments.table)) {
    return showGraph(arguments);
  }
  Console console(arguments.table.options.isQuiet);
  return showTable(arguments, console);
}

}  // namespace

void addSchemaCommand(CLI::App& program, ChosenCommand& chosen) {
  auto arguments = std::make_shared<SchemaArguments>();
  CLI::App* command =
      program.add_subcommand("schema", "List the columns of a table, or those in a graph");
  arguments->form.addTo(*command);
  arguments->table.addTo(*command);
  command->add_option("--set", arguments->settings, "a value for a parameter of the graph")
      ->allow_extra_args(false)
      ->type_name("NAME=VALUE");
  command->footer(
      "Whether a column has missing values is known of columnar files. Of a graph, each\n"
      "output of each action is listed.\n\n"
      "Examples:\n  kelvarin schema sales.csv\n  kelvarin schema sales.kelvarin --format json");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return showSchema(*arguments); }; });
}

}  // namespace kelvarin
