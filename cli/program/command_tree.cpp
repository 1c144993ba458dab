#include "cli/program/command_tree.h"

#include "cli/install/install_commands.h"
#include "cli/install/version_text.h"

namespace kelvarin {

std::unique_ptr<CLI::App> makeCommandTree(ChosenCommand& chosen,
                                          const ProgramArguments& arguments) {
  auto tree = std::make_unique<CLI::App>(
      "Reads tables, computes and filters their rows, and writes them, as a graph file says.",
      "kelvarin");
  CLI::App& program = *tree;
  program.set_version_flag("--version", versionText);
  program.require_subcommand(1);
  program.footer(
      "Example:\n  kelvarin run examples/flights/flights.kelvarin\n\n"
      "Exit status: 0 done, 1 the work failed, 2 wrong usage, 130 interrupted.");
  addRunCommand(program, chosen);
  addCheckCommand(program, chosen);
  addCalcCommand(program, chosen);
  addEvalCommand(program, chosen);
  addFunctionsCommand(program, chosen);
  addActionsCommand(program, chosen);
  addGelCommand(program, chosen);
  addGuiCommand(program, chosen, arguments);
  addEditCommand(program, chosen, arguments);
  addDoctorCommand(program, chosen);
  addCompletionCommand(program, chosen);
  addCompleteCommand(program, chosen);
  addManPagesCommand(program, chosen);
  return tree;
}

}  // namespace kelvarin
