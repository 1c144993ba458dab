// Collects what a run logs, which back-ends its actions choose and which columns they name, and
// passes everything on to the program.
//
// Used by: run_results.cpp, input_columns.cpp.
// Threads: log() and backendsChosen() from any, under a lock.
#pragma once

#include <map>
#include <mutex>

#include "host/contract/host_services.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

class RecordingServices final : public HostServices {
 public:
  // `program` may be null.
  explicit RecordingServices(HostServices* program) : m_program(program) {}

  std::vector<LogLine> takeLog();
  QStringList backendsOf(const ActionItem& action);
  QStringList columnsNamedBy(const ActionItem& action);
  ActionReport reportOf(const ActionItem& action);

  void log(LogLevel level, const QString& text, const ActionItem* action) override;
  void backendsChosen(const ActionItem& action, const QStringList& labels) override;
  void actionReported(const ActionItem& action, const ActionReport& report) override;
  bool outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) override;
  GlobalUserMode userMode() override;
  EditedGraph* editedGraph() override;
  void documentWasModified() override;
  void invalidate() override;
  bool runBranch(EngineRunner& runner, ActionItem& action, int pin) override;
  void openHelp(const QString& helpId, const QString& anchor) override;
  void columnsNamed(const ActionItem& action, const QStringList& names) override;
  PinColumns columnsOfInputPin(const ActionItem& action, int pin) override;
  std::unique_ptr<RowsRequest> requestRows(const ActionItem& action, int pin, bool isOutput,
                                           long long limit,
                                           std::shared_ptr<RowsReceiver> receiver) override;
  void logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                   const LogDetails& details) override;

 private:
  HostServices* m_program;
  std::mutex m_mutex;  // guards the members below
  std::vector<LogLine> m_log;
  std::map<const ActionItem*, QStringList> m_backends;
  std::map<const ActionItem*, QStringList> m_namedColumns;
  std::map<const ActionItem*, ActionReport> m_reports;
};

}  // namespace kelvarin
