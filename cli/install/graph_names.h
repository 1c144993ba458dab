// The names in a graph file that somebody may type on a command line, read without loading actions.
//
// Errors: a file that cannot be read, or is no graph, has the names before the fault, or none.
#pragma once

#include <string>
#include <vector>

#include <QString>

namespace kelvarin {

struct NamedText {
  QString name;
  QString text;  // an action's type, a parameter's value
};

struct GraphNames {
  std::vector<NamedText> actions;
  std::vector<NamedText> parameters;
};

GraphNames namesInGraph(const std::string& path);

}  // namespace kelvarin
