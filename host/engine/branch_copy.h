// A graph, or the part of it above one of its actions, made anew for work beside the graph that is
// edited.
//
// Used by: branch_run.cpp, pin_rows_request.cpp, and programs that run what is edited.
// Threads: the document is taken on the thread that edits the graph; the copy is made, and worked
// with, on another one.
#pragma once

#include <vector>

#include "base/result.h"
#include "host/engine/action_catalogue.h"
#include "host/engine/graph_reader.h"

namespace kelvarin {

// A document of a graph, with the values that the graph's parameters have now.
class GraphSnapshot {
 public:
  GraphSnapshot(const Graph& graph, QByteArray document);

  Result<Graph, GraphErrors> makeCopy(const ActionCatalogue& catalogue) const;
  // With all that is wrong in it.
  Result<OpenedGraph, GraphErrors> open(const ActionCatalogue& catalogue) const;

 private:
  QByteArray m_document;
  QString m_file;
  std::vector<ParameterOverride> m_parameters;
  GlobalParameters m_settings;
};

// One action and all that feed it, as they would be saved now.
class BranchDocument {
 public:
  BranchDocument(const Graph& graph, int lastAction);

  // The error is the first one that the reader of graph files has to report.
  Result<Graph, QString> makeCopy(const ActionCatalogue& catalogue) const;
  // The last action in the copy, by its name.
  const QString& lastAction() const { return m_lastAction; }

 private:
  GraphSnapshot m_snapshot;
  QString m_lastAction;
};

}  // namespace kelvarin
