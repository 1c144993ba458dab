#include "cli/look/look_command.h"

namespace kelvarin {

void addLookCommands(CLI::App& program, ChosenCommand& chosen) {
  addSchemaCommand(program, chosen);
  addRowsCommands(program, chosen);
  addCountCommand(program, chosen);
  addStatsCommand(program, chosen);
}

}  // namespace kelvarin
