// A run of the open graph on threads of its own: of a copy, while the graph is edited.
//
// Threads: the user-interface thread; signals come on it, at most 10 a second while a run goes on.
#pragma once

#include <memory>
#include <optional>

#include <QHash>
#include <QObject>

#include "gui/document/action_state.h"
#include "gui/document/edited_graph.h"
#include "gui/run/run_services.h"
#include "gui/services/edit_services.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

class GraphRun : public QObject {
  Q_OBJECT

 public:
  // What is passed outlives the run.
  GraphRun(EditedGraph& graph, EditServices& services, QObject* parent = nullptr);
  // Stops what runs and waits for its end.
  ~GraphRun() override;

  // False while a run goes on, or where the graph has nothing to run.
  bool start();
  // Only this action and what is above it; its sinks below are left alone.
  bool startTo(ActionId action);
  void stop();
  bool isRunning() const;

  // What the run waits for: the user's answer, or stop().
  std::optional<DiskQuestion> diskQuestion() const;
  // Where nothing is asked, nothing happens.
  void tryDiskAgain();

  // By action; the last run's until the next one. Stale where the graph changed since.
  const QHash<ActionId, ActionState>& states() const;
  // Of the last run that has ended; null before.
  const RunResult* result() const;
  // That does the same as start(), or as startTo(), with the file of the graph as it was saved and
  // the same parameters; empty where the graph has no file.
  QString commandLine(ActionId action = kNoId) const;

 signals:
  void started();
  void statesChanged();
  void diskQuestionChanged();
  void ended();

 private:
  class Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace kelvarin
