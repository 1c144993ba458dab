// The commands and options that a user may see, as man pages and completion show them.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace kelvarin {

struct DescribedOption {
  std::vector<std::string> names;    // "-h", "--help"; one without dashes for an argument
  std::string value;                 // what it takes, as "NAME=VALUE"; empty for a flag
  std::vector<std::string> choices;  // where only some values are allowed
  std::string meaning;
  std::string environment;  // the variable that stands for it
  std::string preset;       // the value without it
  bool isArgument = false;
  bool isRequired = false;
  bool isRepeated = false;
};

std::vector<DescribedOption> describedOptions(const CLI::App& command);
// Below this one, in the order of its help.
std::vector<const CLI::App*> describedCommands(const CLI::App& command);
// "kelvarin gel info", with another separator than a blank where that is asked for.
std::string fullName(const CLI::App& command, char separator = ' ');

}  // namespace kelvarin
