// `kelvarin graph show`: what a graph does, as a text or a drawing.
#include <cstdio>

#include "cli/graphs/graph_command.h"
#include "cli/graphs/graph_declaration.h"
#include "cli/graphs/graph_drawing.h"
#include "cli/graphs/graph_file.h"
#include "cli/graphs/messages.h"
#include "cli/printable_text.h"

namespace kelvarin {

namespace {

struct Arguments {
  std::string file;
  std::string plugin;
  bool isMermaid = false;
  bool isDot = false;
};

ExitStatus show(const Arguments& arguments) {
  Console console(false);
  const auto catalogue = loadCatalogueOf(arguments.plugin, console);
  const auto file = catalogue == nullptr ? std::nullopt : readGraphText(arguments.file, console);
  if (!file) {
    return ExitStatus::failed;
  }
  const GraphFacts facts = factsOf(file->root, declaredGraph(*catalogue));
  const QString text = arguments.isMermaid ? mermaidOf(facts)
                       : arguments.isDot   ? dotOf(facts)
                                           : outlineOf(facts, file->name);
  std::fputs(printable(text).c_str(), stdout);
  return ExitStatus::done;
}

}  // namespace

void addGraphShow(CLI::App& graph, ChosenCommand& chosen) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command =
      graph.add_subcommand("show", "Show actions, links and parameters, in the order of the rows");
  command->add_option("GRAPH", arguments->file, "the graph file; - is standard input")
      ->required()
      ->type_name("");
  CLI::Option* mermaid =
      command->add_flag("--mermaid", arguments->isMermaid, "a drawing for Markdown (Mermaid)");
  command->add_flag("--dot", arguments->isDot, "a drawing for Graphviz")->excludes(mermaid);
  addPluginOption(*command, arguments->plugin);
  command->footer(
      "Examples:\n  kelvarin graph show examples/flights/flights.kelvarin\n"
      "  kelvarin graph show --mermaid examples/flights/flights.kelvarin");
  command->callback([arguments, &chosen] { chosen = [arguments] { return show(*arguments); }; });
}

}  // namespace kelvarin
