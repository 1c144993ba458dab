#include "cli/program/command_tree.h"

#include "cli/look/look_command.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

std::unique_ptr<CLI::App> makeCommandTree(ChosenCommand& chosen,
                                          const ProgramArguments& arguments) {
  auto tree = std::make_unique<CLI::App>(
      "Reads tables, computes and filters their rows, and writes them, as a graph file says.",
      "kelvarin");
  CLI::App& program = *tree;
  program.set_version_flag("--version", MainUI::kelvarinID().toStdString());
  program.require_subcommand(1);
  program.footer(
      "Example:\n  kelvarin run examples/flights/flights.kelvarin\n\n"
      "Exit status: 0 done, 1 the work failed, 2 wrong usage, 130 interrupted.");
  addRunCommand(program, chosen);
  addCheckCommand(program, chosen);
  addLookCommands(program, chosen);
  addEvalCommand(program, chosen);
  addFunctionsCommand(program, chosen);
  addActionsCommand(program, chosen);
  addGelCommand(program, chosen);
  addGuiCommand(program, chosen, arguments);
  addEditCommand(program, chosen, arguments);
  return tree;
}

}  // namespace kelvarin
