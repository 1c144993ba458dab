// The commands of an installation: what the shell completes, the manual, and whether everything
// that the program needs is there.
#pragma once

#include "cli/commands.h"

namespace kelvarin {

// Checks the installation.
void addDoctorCommand(CLI::App& program, ChosenCommand& chosen);
// Prints the script of a shell.
void addCompletionCommand(CLI::App& program, ChosenCommand& chosen);
// Answers such a script; nobody types it.
void addCompleteCommand(CLI::App& program, ChosenCommand& chosen);
// Writes the manual, when the program is built.
void addManPagesCommand(CLI::App& program, ChosenCommand& chosen);

}  // namespace kelvarin
