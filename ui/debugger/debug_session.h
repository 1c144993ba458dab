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

// What is known of a debug run at one moment.
struct DebugState {
  RowHistory rows;
  long long rowCount = 0;      // of all rows of the run
  bool isWaiting = false;      // at the newest row, for the user
  double rowsPerSecond = 0.0;  // since it went on
  QStringList backends;        // the label of each output's engine
};

class DebugSession : public QObject {
  Q_OBJECT

 public:
  explicit DebugSession(ExpressionAction& action, QObject* parent = nullptr);
  // Stops a run and waits for its end.
  ~DebugSession() override;

  bool isRunning() const;
  // Starts where nothing runs; else asks the run to stop at its next row. Where no row comes, it is
  // stopped as the user would stop a graph. False: the host cannot run the action.
  bool startOrStop();
  // Starts a run whose first row obeys the rules, too. False: one is running, or the host cannot.
  bool start(const DebugRules& rules);
  // Stops a run and waits for its end. To be called before the action is deleted.
  void end();

  // The user's step: releases one permit. A run that goes on to a rule is paused.
  void step();
  // Goes on until a rule stops; pause() stops at the next row.
  void goOn(const DebugRules& rules);
  void pause();
  // Takes effect at the next row and leaves all other rules.
  void setCondition(const QString& condition, int element);
  DebugRules rules() const;

  // After computationFinished(), on the user-interface thread: the runner is deleted and the
  // action no longer observed. Without a run that has ended it does nothing.
  void finish();

  // To be asked for after each rowDataUpdated(): the next one comes only then, unless a row stops.
  DebugState state();
  ExpressionAction& action() const { return m_action; }

 signals:
  // From the engine's thread, before it waits. Of rows that are passed by at most one signal is
  // waiting, and ten come in a second.
  void rowDataUpdated();
  // From the engine's thread. Connect it queued.
  void computationFinished();

 private:
  class Runner;
  class Observer;

  void requestStop();

  ExpressionAction& m_action;
  std::unique_ptr<Observer> m_observer;
  std::unique_ptr<Runner> m_runner;  // null: nothing runs
  long long m_runsStarted = 0;
};

}  // namespace kelvarin
