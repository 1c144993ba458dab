// `kelvarin graph schema`: prints the XML schema of graph files.
#include <cstdio>

#include "cli/graphs/graph_command.h"
#include "cli/graphs/graph_declaration.h"
#include "cli/graphs/graph_file.h"
#include "cli/graphs/graph_schema.h"

namespace kelvarin {

namespace {

ExitStatus printSchema(const std::string& plugin) {
  Console console(false);
  const auto catalogue = loadCatalogueOf(plugin, console);
  if (catalogue == nullptr) {
    return ExitStatus::failed;
  }
  std::fputs(schemaOf(declaredGraph(*catalogue)).constData(), stdout);
  return ExitStatus::done;
}

}  // namespace

void addGraphSchema(CLI::App& graph, ChosenCommand& chosen) {
  auto plugin = std::make_shared<std::string>();
  CLI::App* command =
      graph.add_subcommand("schema", "Print the XML schema of graph files, for editors");
  addPluginOption(*command, *plugin);
  command->footer(
      "Editors with XML support complete and check graph files by it.\n\n"
      "Examples:\n  kelvarin graph schema > kelvarin-graph.xsd\n"
      "  kelvarin graph schema | xmllint --noout --schema - "
      "examples/flights/flights.kelvarin");
  command->callback([plugin, &chosen] { chosen = [plugin] { return printSchema(*plugin); }; });
}

}  // namespace kelvarin
