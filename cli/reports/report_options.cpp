#include "cli/reports/report_options.h"

#include <array>
#include <limits>
#include <map>

#include <QDateTime>
#include <QFileInfo>

#include "cli/reports/messages.h"

namespace kelvarin {

namespace {

// Invalid where the text does not say what instant it is.
QDateTime instantOf(const std::string& text) {
  const QDateTime time = QDateTime::fromString(QString::fromStdString(text), Qt::ISODateWithMs);
  const bool hasOffset = time.timeSpec() == Qt::UTC || time.timeSpec() == Qt::OffsetFromUTC;
  return hasOffset ? time : QDateTime();
}

// Checks of the library return what is wrong, or nothing.
std::string whyNoRejects(const std::string& path) {
  const QString extension = QFileInfo(QString::fromStdString(path)).suffix().toLower();
  constexpr std::array kExtensions = {"csv", "parquet", "jsonl"};
  for (const char* known : kExtensions) {
    if (extension == QLatin1String(known)) {
      return {};
    }
  }
  return report_messages::unknownRejects(path);
}

void addFilesTo(CLI::App& command, ReportOptions& options) {
  command.add_option("--rejects", options.rejects, "the rows that failed: .csv, .parquet, .jsonl")
      ->check(CLI::Validator(whyNoRejects, ""))
      ->type_name("FILE");
  command.add_option("--log-file", options.logFile, "add all lines of the log, with their time")
      ->type_name("FILE");
  command.add_option("--summary", options.summary, "the object of --json, as a file")
      ->type_name("FILE");
}

}  // namespace

std::string whyNoInstant(const std::string& text) {
  return instantOf(text).isValid() ? std::string() : report_messages::noInstant(text);
}

void ReportOptions::addTo(CLI::App& command) {
  const std::size_t optionsBefore = command.get_options().size();
  constexpr long long kMaxRows = std::numeric_limits<long long>::max();
  command.add_option("--limit", limit, "at most so many rows from each source")
      ->check(CLI::Range(1LL, kMaxRows).description(""))
      ->type_name("N");
  command.add_option("--seed", seed, "the start of random numbers")->type_name("N");
  command.add_option("--now", now, "the current time, as 2026-01-31T12:00:00Z")
      ->check(CLI::Validator(whyNoInstant, ""))
      ->type_name("TIME");
  command.add_option("--max-errors", maxErrors, "end after so many rows that failed")
      ->check(CLI::Range(1LL, kMaxRows).description(""))
      ->type_name("N");
  command.add_flag("--strict", isStrict, "end with status 1 where there were warnings");
  addFilesTo(command, *this);
  command.add_flag("--explain", isExplained, "how expressions were evaluated, and times");
  const std::map<std::string, ProgressStyle> styles = {{"auto", ProgressStyle::automatic},
                                                       {"json", ProgressStyle::json},
                                                       {"none", ProgressStyle::none}};
  command.add_option("--progress", progress, "auto, json (an object a second) or none")
      ->transform(CLI::CheckedTransformer(styles).description(""))
      ->type_name("STYLE");
  for (std::size_t i = optionsBefore; i < command.get_options().size(); ++i) {
    command.get_options()[i]->group(kReportOptionsGroup);
  }
}

void ReportOptions::applyTo(GlobalParameters& graph) const {
  graph.setRandomSeed(seed);
  if (!now.empty()) {
    graph.setCurrentTime(instantOf(now).toMSecsSinceEpoch());
  }
}

void ReportOptions::applyTo(ExecutionOptions& run) const {
  run.rowsOfSource = limit;
  run.reportsRejectedRows = collectsRejectedRows();
  run.reportsActions = isExplained || !summary.empty() || progress == ProgressStyle::json;
  run.countsValues = isExplained || !summary.empty();
}

}  // namespace kelvarin
