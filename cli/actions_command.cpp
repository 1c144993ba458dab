// `kelvarin actions`: the catalogue of what a graph can be made of.
#include <cstdio>

#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/graph_session.h"
#include "cli/program_services.h"
#include "cli/value_json.h"

namespace kelvarin {

namespace {

Json described(const CatalogueEntry& entry) {
  return {{"typeName", entry.typeName.toStdString()},
          {"toolTip", entry.toolTip.toStdString()},
          {"help", entry.helpId.toStdString()},
          {"tags", jsonOf(entry.tags)},
          {"keywords", jsonOf(entry.keywords)},
          {"fileTypes", jsonOf(entry.fileTypes)},
          {"pinsIn", entry.pinsIn},
          {"pinsOut", entry.pinsOut},
          {"version", entry.version},
          {"source", entry.source == ActionSource::plugin ? "plugin" : "host"}};
}

void printTable(const ActionCatalogue& catalogue) {
  std::string text = fmt::format("{:<22}{:>5}{:>5}  {}\n", "action", "in", "out", "what it does");
  for (const CatalogueEntry& entry : catalogue.entries()) {
    text += fmt::format("{:<22}{:>5}{:>5}  {}\n", entry.typeName.toStdString(), entry.pinsIn, entry.pinsOut,
                        entry.toolTip.toStdString());
  }
  std::fputs(text.c_str(), stdout);
}

ExitStatus listActions(const std::string& plugin, bool isJson) {
  Console console(false);
  const ProgramServices services(console);
  const auto catalogue = loadCatalogue(plugin);
  if (!catalogue) {
    console.writeLog(LogLevel::error, catalogue.error());
    return ExitStatus::failed;
  }
  if (!isJson) {
    printTable(**catalogue);
    return ExitStatus::done;
  }
  Json entries = Json::array();
  for (const CatalogueEntry& entry : (*catalogue)->entries()) {
    entries.push_back(described(entry));
  }
  std::fputs(printed(entries).c_str(), stdout);
  return ExitStatus::done;
}

}  // namespace

void addActionsCommand(CLI::App& program, ChosenCommand& chosen) {
  struct Arguments {
    std::string plugin;
    bool isJson = false;
  };
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command = program.add_subcommand("actions", "List the actions that a graph may use");
  addPluginOption(*command, arguments->plugin);
  command->add_flag("--json", arguments->isJson, "print a JSON array");
  command->footer("Example:\n  kelvarin actions --json");
  command->callback([arguments, &chosen] {
    chosen = [arguments] { return listActions(arguments->plugin, arguments->isJson); };
  });
}

}  // namespace kelvarin
