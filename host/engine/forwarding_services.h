// Services of a run that pass everything on to those of the program: the base of services that see
// some of it on the way.
//
// Used by: recording_services.h, and by programs that follow the runs they start.
// Threads: as HostServices; the program outlives it.
#pragma once

#include "host/contract/host_services.h"

namespace kelvarin {

class ForwardingServices : public HostServices {
 public:
  // `program` may be null: then nobody gets anything.
  explicit ForwardingServices(HostServices* program) : m_program(program) {}

  void log(LogLevel level, const QString& text, const ActionItem* action) final;
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
  // Of every line, whether it has details or not.
  void logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                   const LogDetails& details) override;
  void rowRejected(const ActionItem& action, const RejectedRow& row) override;

 private:
  HostServices* m_program;
};

}  // namespace kelvarin
