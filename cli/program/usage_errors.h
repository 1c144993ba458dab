// What the program says of a command line that it cannot take, with the nearest names of commands
// and options.
#pragma once

#include <CLI/CLI.hpp>

#include "cli/exit_status.h"

namespace kelvarin {

// Whether the line begins with a command that nobody knows, which the library would report as a
// missing one.
bool reportUnknownCommand(const CLI::App& program, int argc, char** argv);

// Prints help or the version where they were asked for, else what is wrong.
ExitStatus finishParsing(const CLI::App& program, const CLI::ParseError& error);

}  // namespace kelvarin
