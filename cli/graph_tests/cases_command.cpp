// `kelvarin test`: runs graphs with inputs of their own and compares what they write.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/graph_run.h"
#include "cli/graph_tests/case_report.h"
#include "cli/graph_tests/messages.h"
#include "cli/interrupt.h"
#include "cli/printable_text.h"
#include "host/files/replace_file.h"

namespace kelvarin {

namespace {

struct Arguments {
  std::vector<std::string> paths;
  std::string junit;
  CaseOptions options;
  int jobs = 0;  // 0: one a processor
  bool isTap = false;
};

int processors() {
  return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

std::vector<JudgedCase> runCases(const std::vector<TestCase>& tests, const Arguments& arguments) {
  std::vector<JudgedCase> cases;
  cases.reserve(tests.size());
  for (const TestCase& test : tests) {
    cases.push_back({test, {}});
  }
  const int jobs = arguments.jobs > 0 ? arguments.jobs : processors();
  CaseOptions options = arguments.options;
  options.threads = std::max(1, processors() / jobs);
  std::atomic<std::size_t> next{0};
  const auto work = [&] {
    for (std::size_t i = next++; i < cases.size(); i = next++) {
      if (wasInterrupted()) {
        cases[i].result.failure = test_messages::interrupted();
      } else {
        cases[i].result = runCase(cases[i].test, options);
      }
    }
  };
  const auto count = std::min(static_cast<std::size_t>(jobs), cases.size());
  std::vector<std::jthread> threads;
  for (std::size_t i = 1; i < count; ++i) {
    threads.emplace_back(work);
  }
  work();
  threads.clear();
  return cases;
}

ExitStatus testAll(const Arguments& arguments) {
  Console console(false);
  std::vector<TestCase> tests;
  for (const std::string& path : arguments.paths) {
    auto found = findTestCases(path);
    if (!found) {
      console.writeLog(LogLevel::error, found.error());
      return ExitStatus::failed;
    }
    std::ranges::move(*found, std::back_inserter(tests));
  }
  RunRecord record;
  std::vector<JudgedCase> cases;
  {
    const InterruptibleRun interruptible(record);
    cases = runCases(tests, arguments);
  }
  const QString report = arguments.isTap ? reportAsTap(cases) : reportForPeople(cases);
  std::fputs(printable(report).c_str(), stdout);
  if (!arguments.junit.empty()) {
    const QString file = QString::fromStdString(arguments.junit);
    if (const auto written = replaceFile(file, reportAsJUnit(cases)); !written) {
      console.writeLog(LogLevel::error, test_messages::cannotWriteReport(file, written.error()));
      return ExitStatus::failed;
    }
  }
  if (wasInterrupted()) {
    return ExitStatus::interrupted;
  }
  return failuresOf(cases) == 0 ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace

void addTestCommand(CLI::App& program, ChosenCommand& chosen) {
  constexpr int kMaxJobs = 1024;
  constexpr int kMaxSeconds = 1'000'000;
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command =
      program.add_subcommand("test", "Run graphs with known inputs, and compare what they write");
  command->add_option("PATH", arguments->paths, "graphs, or folders with graphs below them")
      ->required()
      ->type_name("");
  command->add_flag("--tap", arguments->isTap, "report in the Test Anything Protocol");
  command->add_option("--junit", arguments->junit, "write a report as JUnit does, too")
      ->type_name("FILE");
  command->add_option("--jobs", arguments->jobs, "tests at the same time [as many as processors]")
      ->check(CLI::Range(1, kMaxJobs))
      ->type_name("N");
  command->add_option("--timeout", arguments->options.timeout, "longest time of a run")
      ->check(CLI::Range(1, kMaxSeconds))
      ->type_name("SECONDS")
      ->capture_default_str();
  command->add_flag("--update", arguments->options.isUpdate,
                    "what the runs write becomes what is expected");
  addPluginOption(*command, arguments->options.plugin);
  command->footer(
      "The tests of orders.kelvarin are folders in orders.test; see 'kelvarin help tests'.\n\n"
      "Examples:\n  kelvarin test examples\n"
      "  kelvarin test examples/flights/flights.kelvarin --tap");
  command->callback([arguments, &chosen] { chosen = [arguments] { return testAll(*arguments); }; });
}

}  // namespace kelvarin
