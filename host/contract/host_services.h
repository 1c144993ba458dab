// What a program that runs graphs provides behind the statics of MainUI.
//
// The command line and the test harness each have theirs, and the engine one around it for each
// run; a HostSession says for which threads.
// Threads: log() and outOfDiskSpace() are called from any thread.
#pragma once

#include "host/contract/action_item.h"
#include "host/contract/action_report.h"
#include "host/contract/log_details.h"
#include "host/contract/main_ui.h"
#include "host/contract/pin_columns.h"
#include "host/contract/pin_rows.h"
#include "host/contract/rejected_row.h"

class EngineRunner;

namespace kelvarin {

class KELVARIN_CORE HostServices {
 public:
  virtual ~HostServices();

  // `action` is the one whose call logged, null when unknown.
  virtual void log(LogLevel level, const QString& text, const ActionItem* action) = 0;
  // The back-end labels of an expression action's outputs, once a run, when they are chosen.
  virtual void backendsChosen(const ActionItem& action, const QStringList& labels);
  // At the end of a run, when the action is closed; from the engine's threads.
  virtual void actionReported(const ActionItem& action, const ActionReport& report);
  virtual bool outOfDiskSpace(const QString& file, int missingBytes, bool canRetry);
  virtual GlobalUserMode userMode();
  virtual EditedGraph* editedGraph();
  virtual void documentWasModified();
  virtual void invalidate();
  // Runs the input branch of `action`, then the action itself, on a thread of its own; called by
  // EngineRunner.
  virtual bool runBranch(EngineRunner& runner, ActionItem& action, int pin);
  // Shows a help page. A host without a browser logs where the page is.
  virtual void openHelp(const QString& helpId, const QString& anchor);
  // In a check, the new columns of an action that computes their names, so that a user sees them
  // before a run.
  virtual void columnsNamed(const ActionItem& action, const QStringList& names);
  // The columns that reach an input pin of an action of the open graph, outside a run.
  virtual PinColumns columnsOfInputPin(const ActionItem& action, int pin);
  // See pin_rows.h; a host that cannot answers null.
  virtual std::unique_ptr<RowsRequest> requestRows(const ActionItem& action, int pin, bool isOutput,
                                                   long long limit,
                                                   std::shared_ptr<RowsReceiver> receiver);
  // log() with what the text is about; a program that has no use for it gets the text alone.
  virtual void logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                           const LogDetails& details);
  // A row failed and the action goes on; only in runs whose record asks for it. On the engine
  // thread, for each action in the order of its rows.
  virtual void rowRejected(const ActionItem& action, const RejectedRow& row);
};

// Those of the session in which the calling thread works; null where it has none.
KELVARIN_CORE HostServices* hostServices();

// The columns that reach an input pin, for an editor of the action.
KELVARIN_CORE PinColumns columnsOfInputPin(const ActionItem& action, int pin);

}  // namespace kelvarin
