// The commands of the program, one file each.
//
// An add... function declares a command's options. When the user gave that command, parsing stores
// what is to be done in `chosen`; the program runs it after parsing, so that wrong usage is found
// before anything happens.
#pragma once

#include <functional>

#include <CLI/CLI.hpp>

#include "cli/exit_status.h"

namespace kelvarin {

using ChosenCommand = std::function<ExitStatus()>;

// What a command needs that makes another application object than the program's.
struct ProgramArguments {
  char** argv = nullptr;
  std::function<void()> endApplication;  // destroys the program's
};

void addRunCommand(CLI::App& program, ChosenCommand& chosen);
void addCheckCommand(CLI::App& program, ChosenCommand& chosen);
void addCalcCommand(CLI::App& program, ChosenCommand& chosen);
void addEvalCommand(CLI::App& program, ChosenCommand& chosen);
void addFunctionsCommand(CLI::App& program, ChosenCommand& chosen);
void addActionsCommand(CLI::App& program, ChosenCommand& chosen);
void addGelCommand(CLI::App& program, ChosenCommand& chosen);
void addGraphCommand(CLI::App& program, ChosenCommand& chosen);
void addTestCommand(CLI::App& program, ChosenCommand& chosen);
void addHelpCommand(CLI::App& program, ChosenCommand& chosen);
void addVersionCommand(CLI::App& program, ChosenCommand& chosen);
void addGuiCommand(CLI::App& program, ChosenCommand& chosen, ProgramArguments programArguments);
void addEditCommand(CLI::App& program, ChosenCommand& chosen, ProgramArguments programArguments);

}  // namespace kelvarin
