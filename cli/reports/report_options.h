// What a user asks of a run beside its result: rows of it only, the same result each time, rejected
// rows, and what is reported while it goes on and afterwards.
//
// Used by: cli/graph_run.h, for `kelvarin run` and the commands that make their graph themselves.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "host/contract/global_parameters.h"
#include "host/engine/execution_options.h"

namespace kelvarin {

enum class ProgressStyle {
  automatic,  // a line on a terminal
  json,       // an object a line, every second
  none
};

// The group of these options in help; the topic reports explains them.
inline constexpr char kReportOptionsGroup[] = "Reports";

struct ReportOptions {
  std::optional<long long> limit;  // rows of each source
  std::optional<std::uint32_t> seed;
  std::string now;      // ISO 8601 with an offset; empty: the clock's
  std::string rejects;  // files; empty: none
  std::string logFile;
  std::string summary;
  long long maxErrors = 0;  // 0: any number
  bool isStrict = false;
  bool isExplained = false;
  ProgressStyle progress = ProgressStyle::automatic;

  void addTo(CLI::App& command);

  bool collectsRejectedRows() const { return !rejects.empty() || maxErrors > 0; }
  // As far as a run depends on them.
  void applyTo(GlobalParameters& graph) const;
  void applyTo(ExecutionOptions& run) const;
};

// Why --now does not take a text, or nothing.
std::string whyNoInstant(const std::string& text);

}  // namespace kelvarin
