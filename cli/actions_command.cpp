// `kelvarin actions`: the catalogue of what a graph can be made of.
#include <cstdio>

#include <fmt/format.h>

#include "cli/action_page.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/graph_session.h"
#include "cli/program_services.h"
#include "cli/value_json.h"
#include "host/contract/nearest_names.h"
#include "host/engine/messages.h"

namespace kelvarin {

namespace {

void printTable(const ActionCatalogue& catalogue) {
  std::string text = fmt::format("{:<22}{:>5}{:>5}  {}\n", "action", "in", "out", "what it does");
  for (const CatalogueEntry& entry : catalogue.entries()) {
    text += fmt::format("{:<22}{:>5}{:>5}  {}\n", entry.typeName.toStdString(), entry.pinsIn,
                        entry.pinsOut, entry.toolTip.toStdString());
  }
  std::fputs(text.c_str(), stdout);
}

void printJson(const std::vector<CatalogueEntry>& entries) {
  Json list = Json::array();
  for (const CatalogueEntry& entry : entries) {
    list.push_back(actionJson(entry));
  }
  std::fputs(printed(list).c_str(), stdout);
}

ExitStatus listAll(const ActionCatalogue& catalogue, bool isJson) {
  if (isJson) {
    printJson(catalogue.entries());
  } else {
    printTable(catalogue);
  }
  return ExitStatus::done;
}

ExitStatus listOne(const ActionCatalogue& catalogue, const QString& name, bool isJson,
                   Console& console) {
  const CatalogueEntry* entry = catalogue.find(name);
  if (entry == nullptr) {
    const QStringList known = catalogue.typeNames();
    console.writeLog(LogLevel::error,
                     engine_messages::unknownAction(name, nearestNames(name, known), known));
    return ExitStatus::failed;
  }
  if (isJson) {
    printJson({*entry});
  } else {
    std::fputs(actionPage(*entry).c_str(), stdout);
  }
  return ExitStatus::done;
}

struct Arguments {
  std::string name;
  std::string plugin;
  bool isJson = false;
};

ExitStatus listActions(const Arguments& arguments) {
  Console console(false);
  const ProgramServices services(console);
  const auto catalogue = loadCatalogue(arguments.plugin);
  if (!catalogue) {
    console.writeLog(LogLevel::error, catalogue.error());
    return ExitStatus::failed;
  }
  const QString name = QString::fromStdString(arguments.name);
  return name.isEmpty() ? listAll(**catalogue, arguments.isJson)
                        : listOne(**catalogue, name, arguments.isJson, console);
}

}  // namespace

void addActionsCommand(CLI::App& program, ChosenCommand& chosen) {
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command = program.add_subcommand("actions", "List the actions that a graph may use");
  command->add_option("NAME", arguments->name, "shows the attributes and elements of this action");
  addPluginOption(*command, arguments->plugin);
  command->add_flag("--json", arguments->isJson, "print a JSON array");
  command->footer("Examples:\n  kelvarin actions\n  kelvarin actions ReadCSV");
  command->callback(
      [arguments, &chosen] { chosen = [arguments] { return listActions(*arguments); }; });
}

}  // namespace kelvarin
