// All commands of the program with their options: what reads the command line, and what help
// and completion are made of.
#pragma once

#include <memory>

#include "cli/commands.h"

namespace kelvarin {

// `chosen` outlives the tree.
std::unique_ptr<CLI::App> makeCommandTree(ChosenCommand& chosen, const ProgramArguments& arguments);

}  // namespace kelvarin
