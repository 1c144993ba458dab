#include "cli/install/described_options.h"

#include <sstream>

namespace kelvarin {

namespace {

// The library's word for a type has the allowed values behind it: "KIND:{csv,json}".
std::vector<std::string> choicesOf(const std::string& type) {
  const std::size_t begin = type.find('{');
  const std::size_t end = type.find('}');
  std::vector<std::string> choices;
  if (begin == std::string::npos || end == std::string::npos) {
    return choices;
  }
  std::istringstream list(type.substr(begin + 1, end - begin - 1));
  for (std::string choice; std::getline(list, choice, ',');) {
    choices.push_back(choice.substr(0, choice.find("->")));
  }
  return choices;
}

std::string joined(const std::vector<std::string>& words, const char* separator) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : separator) + word;
  }
  return text;
}

DescribedOption describe(const CLI::Option& option) {
  DescribedOption described;
  const bool isFlag = option.get_items_expected_max() == 0;
  const std::string type = option.get_type_name();
  described.isArgument = option.get_positional();
  if (described.isArgument) {
    described.names.push_back(option.get_name(true, false));
  }
  for (const std::string& name : option.get_snames()) {
    described.names.push_back("-" + name);
  }
  for (const std::string& name : option.get_lnames()) {
    described.names.push_back("--" + name);
  }
  described.choices = choicesOf(type);
  if (!isFlag) {
    const std::string word = type.substr(0, type.find(':'));
    described.value = described.isArgument ? described.names.front()
                      : word.empty()       ? joined(described.choices, "|")
                                           : word;
  }
  described.meaning = option.get_description();
  described.environment = option.get_envname();
  described.preset = isFlag ? std::string() : option.get_default_str();
  described.isRequired = option.get_required();
  described.isRepeated = option.get_items_expected_max() > 1;
  return described;
}

}  // namespace

std::vector<DescribedOption> describedOptions(const CLI::App& command) {
  std::vector<DescribedOption> described;
  for (const CLI::Option* option : command.get_options()) {
    if (!option->get_group().empty()) {
      described.push_back(describe(*option));
    }
  }
  // Groups of options are commands without a name in the library.
  for (const CLI::App* group : command.get_subcommands([](const CLI::App*) { return true; })) {
    if (group->get_name().empty()) {
      const std::vector<DescribedOption> options = describedOptions(*group);
      described.insert(described.end(), options.begin(), options.end());
    }
  }
  return described;
}

std::vector<const CLI::App*> describedCommands(const CLI::App& command) {
  std::vector<const CLI::App*> commands;
  for (const CLI::App* below : command.get_subcommands([](const CLI::App*) { return true; })) {
    if (!below->get_group().empty() && !below->get_name().empty()) {
      commands.push_back(below);
    }
  }
  return commands;
}

std::string fullName(const CLI::App& command, char separator) {
  const CLI::App* outer = command.get_parent();
  return outer == nullptr ? command.get_name()
                          : fullName(*outer, separator) + separator + command.get_name();
}

}  // namespace kelvarin
