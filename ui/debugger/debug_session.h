// One step debugger: the gate between the action that runs and the user who looks at its rows.
//
// The engine's thread shows a row and takes a permit; the user's step releases one. A row at which
// no rule stops releases its own permit, so that it is taken as every other.
// Threads: operations on the user-interface thread; the observer's on the engine's. They share the
// gate, the stop flag, the rules and the latest rows, each a std primitive or under a mutex.
#pragma once

#include <memory>

#include <QObject>

#include "actions/frame/expression_action.h"
#include "ui/debugger/debug_rules.h"
#include "ui/debugger/row_history.h"

namespace kelvarin {

class DebugSession : public QObject {
  Q_OBJECT

 public:
  explicit DebugSession(ExpressionAction& action, QObject* parent = nullptr);
  // Stops a run and waits for its end.
  ~DebugSession() override;

  bool isRunning() const;
  // Starts where nothing runs; else asks the run to stop at its next row. False: the host cannot
  // run the action.
  bool startOrStop();
  // Releases one permit; to be called on every step.
  void step();
  // Goes on until a rule stops; pause() stops at the next row.
  void goOn(const DebugRules& rules);
  void pause();
  // To be called when computationFinished() has come, on the user-interface thread.
  void finish();

  // A copy of what is known: the rows that were shown, with the newest last.
  RowHistory history() const;

 signals:
  // From the engine's thread, before it waits; at most one is waiting to be seen.
  void rowDataUpdated();
  void computationFinished();

 private:
  class Gate;
  std::unique_ptr<Gate> m_gate;
};

}  // namespace kelvarin
