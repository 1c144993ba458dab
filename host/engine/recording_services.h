// Collects what a run logs, which back-ends its actions choose and which columns they name, and
// passes everything on to the program.
//
// Used by: run_results.cpp, input_columns.cpp.
// Threads: log() and backendsChosen() from any, under a lock.
#pragma once

#include <map>
#include <mutex>

#include "host/engine/forwarding_services.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

class RecordingServices final : public ForwardingServices {
 public:
  using ForwardingServices::ForwardingServices;

  std::vector<LogLine> takeLog();
  QStringList backendsOf(const ActionItem& action);
  QStringList columnsNamedBy(const ActionItem& action);
  ActionReport reportOf(const ActionItem& action);

  void backendsChosen(const ActionItem& action, const QStringList& labels) override;
  void actionReported(const ActionItem& action, const ActionReport& report) override;
  void columnsNamed(const ActionItem& action, const QStringList& names) override;
  void logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                   const LogDetails& details) override;

 private:
  std::mutex m_mutex;  // guards the members below
  std::vector<LogLine> m_log;
  std::map<const ActionItem*, QStringList> m_backends;
  std::map<const ActionItem*, QStringList> m_namedColumns;
  std::map<const ActionItem*, ActionReport> m_reports;
};

}  // namespace kelvarin
