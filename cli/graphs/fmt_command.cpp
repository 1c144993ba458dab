// `kelvarin graph fmt`: brings graph files into one layout.
#include "cli/command_graph.h"
#include "cli/graphs/element_layout.h"
#include "cli/graphs/graph_command.h"
#include "cli/graphs/graph_declaration.h"
#include "cli/graphs/graph_file.h"
#include "cli/graphs/messages.h"

namespace kelvarin {

namespace {

struct Arguments {
  std::vector<std::string> files;
  std::string plugin;
  bool isCheck = false;
  bool isQuiet = false;
};

class Formatter {
 public:
  Formatter(const Arguments& arguments, const ActionCatalogue& catalogue, Console& console)
      : m_arguments(arguments), m_graph(declaredGraph(catalogue)), m_console(console) {}

  // False where the file could not be laid out, or is not as it should be.
  bool format(const std::string& path) {
    const auto file = readGraphText(path, m_console);
    if (!file) {
      return false;
    }
    const QString layout = laidOut(file->document, m_graph);
    const auto parsed = parseXml(layout.toUtf8());
    if (!parsed || !isSameContent(file->root, *parsed, m_graph)) {
      m_console.writeLog(LogLevel::error, graph_messages::layoutChangesMeaning(file->name));
      return false;
    }
    const bool isSame = layout.toUtf8() == file->bytes;
    if (m_arguments.isCheck) {
      if (!isSame) {
        m_console.writeLog(LogLevel::error, graph_messages::notLaidOut(file->name));
      }
      return isSame;
    }
    if (path == kStandardStream) {
      return writeGraphText(path, layout, m_console);
    }
    if (isSame) {
      return true;
    }
    const bool isWritten = writeGraphText(path, layout, m_console);
    if (isWritten) {
      m_console.writeLog(LogLevel::information, graph_messages::laidOutAnew(file->name));
    }
    return isWritten;
  }

 private:
  const Arguments& m_arguments;
  const ElementDescription m_graph;
  Console& m_console;
};

ExitStatus formatAll(const Arguments& arguments) {
  Console console(arguments.isQuiet);
  const auto catalogue = loadCatalogueOf(arguments.plugin, console);
  if (catalogue == nullptr) {
    return ExitStatus::failed;
  }
  Formatter formatter(arguments, *catalogue, console);
  ExitStatus status = ExitStatus::done;
  for (const std::string& file : arguments.files) {
    status = formatter.format(file) ? status : ExitStatus::failed;
  }
  return status;
}

}  // namespace

void addGraphFmt(CLI::App& graph, ChosenCommand& chosen) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command = graph.add_subcommand(
      "fmt", "Write graph files in one layout; comments stay, the meaning too");
  command->add_option("GRAPH", arguments->files, "graph files; - is standard input to output")
      ->required()
      ->type_name("");
  command->add_flag("--check", arguments->isCheck,
                    "write nothing, and end with 1 if a file has another layout");
  command->add_flag("--quiet", arguments->isQuiet, "do not say which files were written");
  addPluginOption(*command, arguments->plugin);
  command->footer(
      "Examples:\n  kelvarin graph fmt examples/flights/flights.kelvarin\n"
      "  kelvarin graph fmt --check examples/flights/flights.kelvarin");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return formatAll(*arguments); }; });
}

}  // namespace kelvarin
