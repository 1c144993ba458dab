// Times rows a second through whole graphs. The graphs take turns, so that a machine that slows
// down slows all of them, and the median of the rounds is what counts.
#include <algorithm>
#include <cstdio>
#include <fstream>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/os.h>
#include <nlohmann/json.hpp>

#include <QCoreApplication>
#include <QTemporaryDir>

#include "benchmarks/generated_rows.h"
#include "host/engine/graph_reader.h"
#include "host/engine/run_graph.h"
#include "host/tables/table_actions.h"

namespace kelvarin {

namespace {

struct BenchmarkArguments {
  int rows = 5'000'000;
  int rounds = 5;
  std::string plugin;
  bool isJson = false;
};

struct BenchmarkCase {
  const char* name;
  const char* what;
  QByteArray graph;
  std::vector<double> seconds;
};

constexpr char kActions[] = R"(
  <Calculator name='compute'>
    <InputVars><InputVar column='price'/><InputVar column='quantity'/></InputVars>
    <OutputVars>
      <OutputVar name='total'>price * quantity</OutputVar>
      <OutputVar name='discount'>quantity > 10 ? price * 0.1 : 0</OutputVar>
      <OutputVar name='share'>price / (price + quantity)</OutputVar>
    </OutputVars>
  </Calculator>
  <FilterRows name='keep'>
    <Expression>total >= 100</Expression>
    <InputVars><InputVar column='total'/></InputVars>
  </FilterRows>)";

QByteArray graphOf(const QByteArray& source, bool isComputing, const QByteArray& sink) {
  QByteArray actions = "<KelvarinGraph version='1.0'><Actions>" + source;
  QByteArray links = "<Link from='source' to='sink'/>";
  if (isComputing) {
    actions += kActions;
    links =
        "<Link from='source' to='compute'/><Link from='compute' to='keep'/>"
        "<Link from='keep' to='sink'/>";
  }
  return actions + sink + "</Actions><Links>" + links + "</Links></KelvarinGraph>";
}

std::vector<BenchmarkCase> casesFor(int rows) {
  const QByteArray csv = "<ReadCSV name='source' file='in.csv'/>";
  const QByteArray counting =
      "<GeneratedRows name='source' rows='" + QByteArray::number(rows) + "'/>";
  const QByteArray file = "<WriteCSV name='sink' file='out.csv'/>";
  const QByteArray nowhere = "<Discard name='sink'/>";
  return {
      {"csv", "CSV -> Calculator (3 outputs) -> FilterRows -> CSV", graphOf(csv, true, file), {}},
      {"csv copy", "CSV -> CSV", graphOf(csv, false, file), {}},
      {"generated",
       "counting -> Calculator (3 outputs) -> FilterRows -> Discard",
       graphOf(counting, true, nowhere),
       {}},
      {"generated only", "counting -> Discard", graphOf(counting, false, nowhere), {}}};
}

void writeInput(const std::string& file, int rows) {
  fmt::ostream out = fmt::output_file(file, fmt::buffer_size = 1 << 20);
  out.print("id,price,quantity,city,day\n");
  constexpr const char* kCities[] = {"Lyon", "Porto", "Turin", "Ghent", "Malmö"};
  for (int row = 0; row < rows; ++row) {
    out.print("{},{}.{:02},{},{},2024-{:02}-{:02}\n", row, row % 10007 / 100, row % 10007 % 100,
              1 + row % 17, kCities[row % 5], 1 + row % 12, 1 + row % 28);
  }
}

// Ends the program on any failure: a time of a run that failed means nothing.
double secondsOf(const BenchmarkCase& timed, const QString& folder,
                 const ActionCatalogue& catalogue) {
  auto graph = parseGraph(timed.graph, folder + "/benchmark.kelvarin", catalogue);
  if (!graph) {
    fmt::print(stderr, "error: {}\n", graph.error().front().text().toStdString());
    std::exit(1);
  }
  RunRecord record;
  const RunResult result = runGraph(*graph, record);
  if (!result.isOk()) {
    fmt::print(stderr, "error: the graph '{}' failed\n", timed.name);
    std::exit(1);
  }
  return result.seconds;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2.0;
}

void report(const std::vector<BenchmarkCase>& cases, const BenchmarkArguments& arguments) {
  nlohmann::json list = nlohmann::json::array();
  if (!arguments.isJson) {
    fmt::print("{} rows, {} rounds\n{:<16}{:>10}{:>10}{:>10}{:>16}\n", arguments.rows,
               arguments.rounds, "graph", "median s", "min s", "max s", "rows/s");
  }
  for (const BenchmarkCase& timed : cases) {
    const auto [least, most] = std::minmax_element(timed.seconds.begin(), timed.seconds.end());
    const double middle = median(timed.seconds);
    const double rowsPerSecond = arguments.rows / middle;
    list.push_back({{"name", timed.name},
                    {"what", timed.what},
                    {"rows", arguments.rows},
                    {"medianSeconds", middle},
                    {"minSeconds", *least},
                    {"maxSeconds", *most},
                    {"rowsPerSecond", rowsPerSecond}});
    if (!arguments.isJson) {
      fmt::print("{:<16}{:>10.3f}{:>10.3f}{:>10.3f}{:>16.0f}\n", timed.name, middle, *least, *most,
                 rowsPerSecond);
    }
  }
  if (arguments.isJson) {
    fmt::print("{}\n", list.dump(2));
  }
}

int runBenchmark(const BenchmarkArguments& arguments) {
  auto plugin = PluginLibrary::load(QString::fromStdString(arguments.plugin));
  if (!plugin) {
    fmt::print(stderr, "error: {}\n", plugin.error().toStdString());
    return 1;
  }
  ActionCatalogue::Prototypes hostActions = makeTableActions();
  hostActions.push_back(std::make_unique<GeneratedRows>(XMLNode::emptyNode(), nullptr));
  const ActionCatalogue catalogue(std::move(*plugin), std::move(hostActions));
  const QTemporaryDir folder;
  writeInput(folder.filePath("in.csv").toStdString(), arguments.rows);
  std::vector<BenchmarkCase> cases = casesFor(arguments.rows);
  for (int round = 0; round < arguments.rounds; ++round) {
    for (BenchmarkCase& timed : cases) {
      timed.seconds.push_back(secondsOf(timed, folder.path(), catalogue));
    }
  }
  report(cases, arguments);
  return 0;
}

}  // namespace

}  // namespace kelvarin

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  kelvarin::BenchmarkArguments arguments;
  CLI::App program("Times rows a second through whole graphs.", "row_benchmark");
  program.add_option("--rows", arguments.rows, "rows of each graph")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  program.add_option("--rounds", arguments.rounds, "how often each graph runs")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  program.add_option("--plugin", arguments.plugin,
                     "the plug-in's file, in place of the one beside the program");
  program.add_flag("--json", arguments.isJson, "print a JSON array");
  CLI11_PARSE(program, argc, argv);
  return kelvarin::runBenchmark(arguments);
}
