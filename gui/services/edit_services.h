// What the window offers to actions and editors: the log, branches to debug, rows and columns of
// pins, the help.
//
// Threads: made and asked on the user-interface thread; log() and backendsChosen() come from any.
// Signals come on the user-interface thread, after the call.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include <QObject>

#include "gui/document/edited_graph.h"
#include "gui/services/log_entry.h"
#include "gui/threads/posted_calls.h"
#include "host/contract/host_services.h"
#include "host/engine/input_columns_cache.h"

namespace kelvarin {

class EditServices final : public QObject, public HostServices {
  Q_OBJECT

 public:
  EditServices(EditedGraph& graph, const ActionCatalogue& catalogue);

  void setUserMode(GlobalUserMode mode) { m_userMode = mode; }
  // The graph was replaced: what is known of its columns is not true any more.
  void forgetColumns() { m_columns.clear(); }
  // Somebody who knows columns already: nothing where their version is not that of the graph. Null:
  // nobody does.
  using KnownColumns = std::function<std::optional<PinColumns>(const ActionItem& action, int pin)>;
  void setKnownColumns(KnownColumns known) { m_knownColumns = std::move(known); }

  void log(LogLevel level, const QString& text, const ActionItem* action) override;
  void logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                   const LogDetails& details) override;
  void backendsChosen(const ActionItem& action, const QStringList& labels) override;
  GlobalUserMode userMode() override { return m_userMode; }
  EditedGraph* editedGraph() override { return &m_graph; }
  void documentWasModified() override;
  bool runBranch(EngineRunner& runner, ActionItem& action, int pin) override;
  void openHelp(const QString& helpId, const QString& anchor) override;
  PinColumns columnsOfInputPin(const ActionItem& action, int pin) override;
  std::unique_ptr<RowsRequest> requestRows(const ActionItem& action, int pin, bool isOutput,
                                           long long limit,
                                           std::shared_ptr<RowsReceiver> receiver) override;

 signals:
  void logged(const std::vector<kelvarin::LogEntry>& entries);
  void backendsKnown(const QString& action, const QStringList& labels);
  void modified();
  void helpWanted(const QString& helpId, const QString& anchor);

 private:
  void passLog();

  EditedGraph& m_graph;
  const ActionCatalogue& m_catalogue;
  PinRowsRequests m_requests;
  InputColumnsCache m_columns;
  KnownColumns m_knownColumns;
  std::atomic<GlobalUserMode> m_userMode{GlobalUserMode::expert};
  PostedCalls m_posted;
  std::mutex m_mutex;  // guards what follows
  std::vector<LogEntry> m_waiting;
  long long m_lostCount = 0;  // lines that came faster than they can be shown
};

}  // namespace kelvarin
