#include "cli/graphs/graph_command.h"

namespace kelvarin {

void addGraphCommand(CLI::App& program, ChosenCommand& chosen) {
  CLI::App* graph = program.add_subcommand(
      "graph", "Make, lay out, show, compare and upgrade graph files as text");
  graph->require_subcommand(1);
  graph->footer(
      "Examples:\n  kelvarin graph show examples/flights/flights.kelvarin\n"
      "  kelvarin graph fmt --check examples/flights/flights.kelvarin");
  addGraphNew(*graph, chosen);
  addGraphFmt(*graph, chosen);
  addGraphShow(*graph, chosen);
  addGraphDiff(*graph, chosen);
  addGraphUpgrade(*graph, chosen);
  addGraphSchema(*graph, chosen);
}

}  // namespace kelvarin
