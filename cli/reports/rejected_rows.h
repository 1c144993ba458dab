// The rows of a run after which an action has gone on although an expression failed: collected
// during the run, and written to a file when it is over.
//
// A row that failed in several expressions is there once for each. The rows of an action stay
// together and in their order, and the actions are in that of the graph, so the file is the same
// for any number of threads. Beyond some MiB the rows wait in a temporary file.
// Threads: the engine's, and after the run its caller's.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/result.h"
#include "host/contract/batch_collector.h"
#include "host/engine/forwarding_services.h"
#include "host/engine/graph.h"
#include "host/engine/row_queue.h"

namespace kelvarin {

class RejectedRows final : public ForwardingServices {
 public:
  struct Settings {
    bool keepsRows = true;  // false: they are counted only
    long long maxRows = 0;  // with which the run fails; 0: any number
  };

  // The services of the graph's run, between it and the program's. All outlive this object.
  RejectedRows(HostServices* program, const Graph& graph, RunRecord& record, Settings settings);
  ~RejectedRows() override;

  void rowRejected(const ActionItem& action, const RejectedRow& row) override;

  // However many of a row's expressions have failed.
  long long rowCount() const { return m_rowCount; }

  // The columns of the file.
  static PinColumns columns();
  // The next rows; null: there are none, or they could not be read (see failure()).
  RowBatchPointer next();
  // Why rows could not be kept; empty where all were.
  const QString& failure() const { return m_failure; }

 private:
  struct OfAction;

  OfAction& rowsOf(const ActionItem& action);
  void keep(OfAction& rows, const ActionItem& action, const RejectedRow& row);
  bool push(OfAction& rows);
  void endRun(const ActionItem& action, const RejectedRow& row);

  const Graph& m_graph;
  RunRecord& m_record;
  const Settings m_settings;
  std::vector<std::unique_ptr<OfAction>> m_actions;  // by the action's index; null without rows
  std::size_t m_next = 0;                            // whose rows are next
  long long m_rowCount = 0;
  QString m_failure;
};

// All columns of the row, as a JSON object.
std::string jsonOfRow(const OneRow& row);

// An object a line, with the values as an object in it.
Status<QString> writeJsonLines(const QString& path, RejectedRows& rows);

}  // namespace kelvarin
