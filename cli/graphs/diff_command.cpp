// `kelvarin graph diff`: how two graphs differ in what they do.
#include <cstdio>

#include "cli/graphs/graph_command.h"
#include "cli/graphs/graph_declaration.h"
#include "cli/graphs/graph_difference.h"
#include "cli/graphs/graph_file.h"
#include "cli/graphs/older_forms.h"
#include "cli/printable_text.h"

namespace kelvarin {

namespace {

struct Arguments {
  std::string before;
  std::string after;
  std::string plugin;
  bool isQuiet = false;
};

// In today's form, so that an older form of the same is no difference.
std::optional<GraphFacts> factsOfFile(const std::string& path, const ActionCatalogue& catalogue,
                                      Console& console) {
  const auto file = readGraphText(path, console);
  if (!file) {
    return std::nullopt;
  }
  const UpgradedGraph today = upgraded(file->document, catalogue);
  const auto parsed = parseXml(today.document.toUtf8());
  return factsOf(parsed ? *parsed : file->root, declaredGraph(catalogue));
}

ExitStatus compare(const Arguments& arguments) {
  Console console(false);
  const auto catalogue = loadCatalogueOf(arguments.plugin, console);
  if (catalogue == nullptr) {
    return ExitStatus::wrongUsage;
  }
  const auto before = factsOfFile(arguments.before, *catalogue, console);
  const auto after = factsOfFile(arguments.after, *catalogue, console);
  if (!before || !after) {
    return ExitStatus::wrongUsage;
  }
  const QStringList lines = differenceOf(*before, *after);
  if (!arguments.isQuiet) {
    for (const QString& line : lines) {
      std::puts(printable(line).c_str());
    }
  }
  return lines.isEmpty() ? ExitStatus::done : ExitStatus::failed;
}

}  // namespace

void addGraphDiff(CLI::App& graph, ChosenCommand& chosen) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command =
      graph.add_subcommand("diff", "Compare what two graphs do, whatever their files look like");
  command->add_option("BEFORE", arguments->before, "a graph file")->required()->type_name("");
  command->add_option("AFTER", arguments->after, "another one; - is standard input")
      ->required()
      ->type_name("");
  command->add_flag("--quiet", arguments->isQuiet, "print nothing");
  addPluginOption(*command, arguments->plugin);
  command->footer(
      "Positions on the canvas, notes, spelled-out defaults and older forms are no difference.\n"
      "Exit status: 0 the same, 1 different, 2 a file cannot be read.\n\n"
      "Examples:\n  kelvarin graph diff examples/flights/flights.kelvarin "
      "examples/sensors/sensors.kelvarin\n"
      "  git show HEAD:g.kelvarin | kelvarin graph diff - g.kelvarin\n"
      "  kelvarin graph diff examples/flights/flights.kelvarin - "
      "< examples/flights/flights.kelvarin");
  command->callback([arguments, &chosen] { chosen = [arguments] { return compare(*arguments); }; });
}

}  // namespace kelvarin
