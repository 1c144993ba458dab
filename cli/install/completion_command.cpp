// `kelvarin completion`: prints what makes a shell complete command lines of the program.
#include <cstdio>

#include "cli/install/completion_scripts.h"
#include "cli/install/install_commands.h"

namespace kelvarin {

namespace {

const char* scriptOf(const std::string& shell) {
  return shell == "bash" ? kBashScript : shell == "zsh" ? kZshScript : kFishScript;
}

}  // namespace

void addCompletionCommand(CLI::App& program, ChosenCommand& chosen) {
  auto shell = std::make_shared<std::string>();
  CLI::App* command = program.add_subcommand(
      "completion", "Print the script by which a shell completes command lines");
  command->add_option("SHELL", *shell, "bash, zsh or fish")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh", "fish"}))
      ->type_name("");
  command->footer(
      "Examples:\n  source <(kelvarin completion bash)\n"
      "  kelvarin completion fish > ~/.config/fish/completions/kelvarin.fish");
  command->callback([shell, &chosen] {
    chosen = [shell] {
      std::fputs(scriptOf(*shell), stdout);
      return ExitStatus::done;
    };
  });
}

}  // namespace kelvarin
