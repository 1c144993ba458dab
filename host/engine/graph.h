// A graph as a user draws it: actions, the links between their pins, and parameters.
//
// Made by graph_reader.h, saved by graph_writer.h, run by run_graph.h, checked by check_graph.h.
// Threads: one at a time.
#pragma once

#include <memory>
#include <vector>

#include <QString>

#include "host/contract/action_item.h"

namespace kelvarin {

struct GraphParameter {
  QString name;
  QString value;  // as in the file
};

struct GraphAction {
  QString name;
  XMLNode::Position position;
  std::unique_ptr<ActionItem> item;
  bool isDisabled = false;  // runs and checks let rows go through it unchanged
};

// Actions are named by their index in Graph::actions.
struct GraphLink {
  int from = 0;
  int fromPin = 0;
  int to = 0;
  int toPin = 0;
};

// A text box on the canvas; it has no effect on a run.
struct GraphNote {
  double x = 0.0;
  double y = 0.0;
  double width = 0.0;
  double height = 0.0;
  QString colour;  // #RRGGBB and the other forms of isNoteColour(); empty: the canvas's own
  QString text;
};

// "#" with 3 or 6 hexadecimal digits, or 8 of which the first two are the opacity.
bool isNoteColour(const QString& text);

// What a user should know about a graph that can be run.
struct GraphWarning {
  int action = -1;
  QString text;  // with its position in the file
  XMLNode::Position position;
};

struct Graph {
  QString file;  // empty for a graph that was never saved
  std::vector<GraphParameter> parameters;
  std::unique_ptr<GlobalParameters> settings;  // the actions refer to it
  std::vector<GraphAction> actions;
  std::vector<GraphLink> links;
  std::vector<GraphNote> notes;
  std::vector<GraphWarning> warnings;

  // -1 when absent.
  int indexOf(const QString& actionName) const;
  int indexOf(const ActionItem& item) const;
  // Null when nothing is linked to the input pin.
  const GraphLink* linkTo(const ActionItem& item, int pin) const;
  // Takes out the actions with a 0, their links and their warnings.
  void keepOnly(const std::vector<char>& isKept);
};

// Logs its warnings, and which actions get no rows, each on behalf of its action.
void reportWarnings(const Graph& graph);

}  // namespace kelvarin
