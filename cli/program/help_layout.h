// How help looks on a terminal: one line an option where it fits, at most 100 columns, and the
// commands of the program in groups.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace kelvarin {

class HelpLayout final : public CLI::Formatter {
 public:
  HelpLayout();

  // Options that many commands share are named only; a topic explains them.
  std::string make_group(std::string group, bool isPositional,
                         std::vector<const CLI::Option*> options) const override;
  std::string make_option(const CLI::Option* option, bool isPositional) const override;
  std::string make_option_opts(const CLI::Option* option) const override;
  std::string make_option_desc(const CLI::Option* option) const override;
  std::string make_help(const CLI::App* command, std::string name,
                        CLI::AppFormatMode mode) const override;
  std::string make_subcommands(const CLI::App* command, CLI::AppFormatMode mode) const override;
};

}  // namespace kelvarin
