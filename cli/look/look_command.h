// The commands that look into a table or a graph without changing anything.
//
// One a file; see commands.h.
#pragma once

#include "cli/commands.h"

namespace kelvarin {

void addLookCommands(CLI::App& program, ChosenCommand& chosen);

// head, tail and sample.
void addRowsCommands(CLI::App& program, ChosenCommand& chosen);
void addCountCommand(CLI::App& program, ChosenCommand& chosen);
void addSchemaCommand(CLI::App& program, ChosenCommand& chosen);
void addStatsCommand(CLI::App& program, ChosenCommand& chosen);

}  // namespace kelvarin
