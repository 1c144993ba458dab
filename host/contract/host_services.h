// What a program that runs graphs provides behind the statics of MainUI.
//
// One program installs one; the command line and the test harness each have theirs.
// Threads: log() and outOfDiskSpace() are called from any thread.
#pragma once

#include <functional>

#include "host/contract/action_item.h"
#include "host/contract/log_details.h"
#include "host/contract/main_ui.h"

class EngineRunner;

namespace kelvarin {

class KELVARIN_CORE HostServices {
 public:
  virtual ~HostServices();

  // `action` is the one whose call logged, null when unknown.
  virtual void log(LogLevel level, const QString& text, const ActionItem* action) = 0;
  // The back-end labels of an expression action's outputs, once a run, when they are chosen.
  virtual void backendsChosen(const ActionItem& action, const QStringList& labels);
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
  // log() with what the text is about; a program that has no use for it gets the text alone.
  virtual void logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                           const LogDetails& details);
};

// Gives the one installed before. Null takes the services away.
KELVARIN_CORE HostServices* installHostServices(HostServices* services);
KELVARIN_CORE HostServices* hostServices();

// The action on whose behalf this thread runs, so that a log line can name it. Worker threads of an
// action set it too.
class KELVARIN_CORE CurrentAction {
 public:
  explicit CurrentAction(const ActionItem* action) : m_previous(s_action) { s_action = action; }
  ~CurrentAction() { s_action = m_previous; }
  CurrentAction(const CurrentAction&) = delete;
  CurrentAction& operator=(const CurrentAction&) = delete;
  static const ActionItem* get();
  // The thread's variable itself, for those who set it once a row.
  static const ActionItem*& slot();

 private:
  static thread_local const ActionItem* s_action;
  const ActionItem* m_previous;
};

}  // namespace kelvarin
