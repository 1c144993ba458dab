// `kelvarin graph upgrade`: writes older forms of graph files in today's.
#include <QStringConverter>

#include "cli/command_graph.h"
#include "cli/graphs/graph_command.h"
#include "cli/graphs/graph_file.h"
#include "cli/graphs/messages.h"
#include "cli/graphs/older_forms.h"

namespace kelvarin {

namespace {

struct Arguments {
  std::vector<std::string> files;
  std::string plugin;
  bool isCheck = false;
};

bool isPlainUtf8(const GraphFile& file) {
  constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
  const auto encoding = QStringConverter::encodingForData(file.bytes);
  return (!encoding || *encoding == QStringConverter::Utf8) &&
         !file.bytes.startsWith(kByteOrderMark);
}

// False where the file could not be upgraded, or would be in a check.
bool upgrade(const std::string& path, const Arguments& arguments, const ActionCatalogue& catalogue,
             Console& console) {
  const auto file = readGraphText(path, console);
  if (!file) {
    return false;
  }
  UpgradedGraph today = upgraded(file->document, catalogue);
  if (!isPlainUtf8(*file)) {
    today.changes += graph_messages::encodedAsUtf8();
  }
  if (today.changes.isEmpty()) {
    console.writeLog(LogLevel::information, graph_messages::nothingToUpgrade(file->name));
    return path != kStandardStream || arguments.isCheck ||
           writeGraphText(path, file->document, console);
  }
  for (const QString& change : today.changes) {
    console.writeLog(LogLevel::information, graph_messages::upgradeOf(file->name, change));
  }
  if (arguments.isCheck) {
    console.writeLog(LogLevel::error, graph_messages::olderForm(file->name));
    return false;
  }
  const bool isWritten = writeGraphText(path, today.document, console);
  if (isWritten && path != kStandardStream) {
    console.writeLog(LogLevel::information, graph_messages::writtenAnew(file->name));
  }
  return isWritten;
}

ExitStatus upgradeAll(const Arguments& arguments) {
  Console console(false);
  const auto catalogue = loadCatalogueOf(arguments.plugin, console);
  if (catalogue == nullptr) {
    return ExitStatus::failed;
  }
  ExitStatus status = ExitStatus::done;
  for (const std::string& file : arguments.files) {
    status = upgrade(file, arguments, *catalogue, console) ? status : ExitStatus::failed;
  }
  return status;
}

}  // namespace

void addGraphUpgrade(CLI::App& graph, ChosenCommand& chosen) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command = graph.add_subcommand(
      "upgrade", "Write older forms of graph files in today's, and say what changed");
  command->add_option("GRAPH", arguments->files, "graph files; - is standard input to output")
      ->required()
      ->type_name("");
  command->add_flag("--check", arguments->isCheck,
                    "write nothing, and end with 1 if a file is in an older form");
  addPluginOption(*command, arguments->plugin);
  command->footer(
      "Examples:\n  kelvarin graph upgrade examples/flights/flights.kelvarin\n"
      "  kelvarin graph upgrade --check examples/flights/flights.kelvarin");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return upgradeAll(*arguments); }; });
}

}  // namespace kelvarin
