// Every function and constant that this system adds to the expression libraries.
//
// Used by the adapters in expression/backends and by `kelvarin functions`.
// Threads: read-only after the first call.
#pragma once

#include <span>
#include <vector>

#include <QString>

#include "expression/functions/function_line.h"
#include "host/contract/global_parameters.h"

namespace kelvarin {

// All themes, one after the other.
const std::vector<FunctionLine>& functionTable();

// A value with a name. `text` is null for a number; it is given the graph's settings, null without
// a graph.
struct ConstantLine {
  const char* name;
  unsigned backends;
  double number;
  QString (*text)(const GlobalParameters* graph);
  const char* help;
  bool yieldsToParameters = false;  // a graph parameter of this name replaces it
  bool differsByRun = false;
};

std::span<const ConstantLine> constantTable();

}  // namespace kelvarin
