#include "cli/program/command_tree.h"

#include <utility>

#include "cli/install/install_commands.h"
#include "cli/install/version_text.h"
#include "cli/look/look_command.h"
#include "cli/program/help_layout.h"

namespace kelvarin {

namespace {

// Where the program's help lists its commands; the groups come in the order of help_layout.cpp.
constexpr std::pair<const char*, const char*> kGroupOfCommand[] = {
    {"run", "Run"},         {"check", "Run"},      {"test", "Run"},     {"schema", "Look"},
    {"head", "Look"},       {"tail", "Look"},      {"sample", "Look"},  {"count", "Look"},
    {"stats", "Look"},      {"calc", "Compute"},   {"eval", "Compute"}, {"functions", "Compute"},
    {"graph", "Graphs"},    {"actions", "Graphs"}, {"gel", "Files"},    {"gui", "Graphs"},
    {"edit", "Graphs"},     {"help", "Help"},      {"version", "Help"}, {"doctor", "Help"},
    {"completion", "Help"},
};

void groupCommands(CLI::App& program) {
  for (CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    for (const auto& [name, group] : kGroupOfCommand) {
      if (command->get_name() == name) {
        command->group(group);
      }
    }
  }
}

}  // namespace

std::unique_ptr<CLI::App> makeCommandTree(ChosenCommand& chosen,
                                          const ProgramArguments& arguments) {
  auto tree = std::make_unique<CLI::App>(
      "Reads tables, computes and filters their rows, and writes them, as a graph file says.",
      "kelvarin");
  CLI::App& program = *tree;
  program.formatter(std::make_shared<HelpLayout>());
  program.set_help_flag("-h,--help", "show this");
  program.set_version_flag("-V,--version", versionText, "show the version");
  program.require_subcommand(1);
  program.footer(
      "Examples:\n  kelvarin run examples/flights/flights.kelvarin\n"
      "  kelvarin help dates\n\n"
      "Exit status: 0 done, 1 the work failed, 2 wrong usage, 130 interrupted.");
  addRunCommand(program, chosen);
  addCheckCommand(program, chosen);
  addCalcCommand(program, chosen);
  addTestCommand(program, chosen);
  addLookCommands(program, chosen);
  addEvalCommand(program, chosen);
  addFunctionsCommand(program, chosen);
  addActionsCommand(program, chosen);
  addGelCommand(program, chosen);
  addGraphCommand(program, chosen);
  addGuiCommand(program, chosen, arguments);
  addEditCommand(program, chosen, arguments);
  addDoctorCommand(program, chosen);
  addCompletionCommand(program, chosen);
  addCompleteCommand(program, chosen);
  addManPagesCommand(program, chosen);
  addHelpCommand(program, chosen);
  addVersionCommand(program, chosen);
  groupCommands(program);
  return tree;
}

}  // namespace kelvarin
