// A table that is written anew as another one, by a run of a graph of two actions: so messages,
// full disks and interrupts are those of any run.
//
// Used by `kelvarin gel export`, `import` and `recover`.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "cli/command_graph.h"

namespace kelvarin {

struct TableConversion {
  std::string input;
  std::string output;
  RunOptions options;
};

// Two XML elements: actions with the names "input" and "output", whose files are the parameters of
// the same names.
struct ConversionGraph {
  QString source;
  QString sink;
  std::unique_ptr<ActionItem> ownAction;  // of the command; null where the catalogue has both
};

// `finish` reports about a run that has ended well, and says what status it is.
ExitStatus runConversion(const TableConversion& conversion, ConversionGraph graph, Console& console,
                         const std::function<ExitStatus(const RunResult& result)>& finish);

// The table would be made of the very file that it replaces: says so on the console.
bool wouldReplaceItself(const TableConversion& conversion, Console& console);

// Of a run that has ended well.
std::uint64_t rowsWritten(const RunResult& result);

}  // namespace kelvarin
