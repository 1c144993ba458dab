// Reads a graph file and checks all that can be checked without running it.
//
// Layout of the file: docs/graph-files.md.
// Errors: every fault found, each with its position in the file; never throws.
#pragma once

#include <vector>

#include <QByteArray>
#include <QString>

#include "base/result.h"
#include "host/engine/action_catalogue.h"
#include "host/engine/graph.h"

namespace kelvarin {

struct GraphError {
  QString file;
  XMLNode::Position position;  // line 0: the file as a whole
  QString message;

  // "FILE:LINE:COLUMN: MESSAGE"
  QString text() const;
};

// A parameter given by the user for one run.
struct ParameterOverride {
  QString name;
  QString value;
};

using GraphErrors = std::vector<GraphError>;

// The catalogue must outlive the graph.
Result<Graph, GraphErrors> readGraph(const QString& file, const ActionCatalogue& catalogue,
                                     const std::vector<ParameterOverride>& overrides = {});
// The same for a document in memory; `file` is its name in messages and the base of relative paths.
Result<Graph, GraphErrors> parseGraph(const QByteArray& document, const QString& file,
                                      const ActionCatalogue& catalogue,
                                      const std::vector<ParameterOverride>& overrides = {});

// A link as a file has it, whether it can be used or not.
struct LinkInFile {
  QString from;
  int fromPin = 0;  // 0 where the file has no number
  QString to;
  int toPin = 0;
};

// A graph that is opened to be mended: nothing of the file is missing.
struct OpenedGraph {
  // An action for each element of the file's actions: one that stands for it (missing_action.h)
  // where nobody offers the type. Only links without faults.
  Graph graph;
  std::vector<QString> whyActionCannotRun;  // by action; empty for one without faults
  std::vector<LinkInFile> links;            // one for each element of the file's links
  GraphErrors faults;
};

// The errors are those of a document that is no graph at all.
Result<OpenedGraph, GraphErrors> openGraph(const QByteArray& document, const QString& file,
                                           const ActionCatalogue& catalogue,
                                           const std::vector<ParameterOverride>& overrides = {});

// The content of a graph file, without a look into it.
Result<QByteArray, GraphErrors> readGraphFile(const QString& file);

}  // namespace kelvarin
