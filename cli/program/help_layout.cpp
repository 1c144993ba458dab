#include "cli/program/help_layout.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "cli/csv_options.h"
#include "cli/reports/report_options.h"

namespace kelvarin {

namespace {

constexpr std::size_t kLineLength = 100;
constexpr std::size_t kNameColumn = 2;
constexpr std::size_t kTextColumn = 29;

// The groups of the program's commands, in this order; others come behind them.
constexpr std::string_view kGroups[] = {"Run", "Look", "Compute", "Graphs", "Files", "Help"};

// Two columns; the second one goes on below itself.
std::string lineOf(const std::string& name, const std::string& text) {
  std::string out = std::string(kNameColumn, ' ') + name;
  std::size_t used = out.size();
  if (used + 1 > kTextColumn && !text.empty()) {
    out += '\n';
    used = 0;
  }
  std::string_view rest = text;
  bool isFirstWord = true;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    const std::string_view word = rest.substr(0, end);
    if (isFirstWord) {
      out.append(kTextColumn - used, ' ');
      used = kTextColumn;
    } else if (used + 1 + word.size() > kLineLength) {
      out += '\n';
      out.append(kTextColumn, ' ');
      used = kTextColumn;
    } else {
      out += ' ';
      ++used;
    }
    out += word;
    used += word.size();
    isFirstWord = false;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return out + '\n';
}

// Of a group of options that a topic explains; empty for any other one.
std::string_view topicOfGroup(std::string_view group) {
  return group == kCsvOptionsGroup      ? "csv"
         : group == kReportOptionsGroup ? "reports"
                                        : std::string_view();
}

// The type's name and behind it what checks the value, as the library joins them.
std::pair<std::string, std::string> typeAndChecks(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::size_t colon = type.find(':');
  return colon == std::string::npos ? std::pair{type, std::string()}
                                    : std::pair{type.substr(0, colon), type.substr(colon + 1)};
}

}  // namespace

HelpLayout::HelpLayout() {
  label("OPTIONS", "OPTIONS");
  label("Positionals", "Arguments");
}

std::string HelpLayout::make_group(std::string group, bool isPositional,
                                   std::vector<const CLI::Option*> options) const {
  const std::string_view topic = topicOfGroup(group);
  if (topic.empty()) {
    return Formatter::make_group(std::move(group), isPositional, std::move(options));
  }
  std::string names;
  for (const CLI::Option* option : options) {
    names += (names.empty() ? "" : ", ") + option->get_name();
  }
  return '\n' + group + ", explained by 'kelvarin help " + std::string(topic) + "':\n" +
         lineOf({}, names);
}

std::string HelpLayout::make_option(const CLI::Option* option, bool isPositional) const {
  return lineOf(make_option_name(option, isPositional) +
                    (isPositional ? std::string() : make_option_opts(option)),
                make_option_desc(option));
}

// What stands behind the name: the values to choose from, or what kind of value it takes.
std::string HelpLayout::make_option_opts(const CLI::Option* option) const {
  if (!option->get_option_text().empty()) {
    return ' ' + option->get_option_text();
  }
  if (option->get_type_size() == 0) {
    return {};
  }
  const auto [type, checks] = typeAndChecks(*option);
  const bool isChoice = checks.starts_with('{') || type.starts_with('{');
  const std::string value = isChoice ? (type.starts_with('{') ? type : checks) : type;
  return (value.empty() ? std::string() : ' ' + value) +
         (option->get_expected_max() == CLI::detail::expected_max_vector_size ? " ..." : "");
}

std::string HelpLayout::make_option_desc(const CLI::Option* option) const {
  std::string text = option->get_description();
  if (!option->get_default_str().empty()) {
    text += " [" + option->get_default_str() + ']';
  }
  if (!option->get_envname().empty()) {
    text += " (environment: " + option->get_envname() + ')';
  }
  return text;
}

// The library puts two empty lines between groups.
std::string HelpLayout::make_help(const CLI::App* command, std::string name,
                                  CLI::AppFormatMode mode) const {
  std::string help = Formatter::make_help(command, std::move(name), mode);
  for (std::size_t at = help.find("\n\n\n"); at != std::string::npos;
       at = help.find("\n\n\n", at)) {
    help.erase(at, 1);
  }
  return help;
}

std::string HelpLayout::make_subcommands(const CLI::App* command, CLI::AppFormatMode) const {
  std::vector<std::string> groups(std::begin(kGroups), std::end(kGroups));
  const auto commands = command->get_subcommands([](const CLI::App*) { return true; });
  for (const CLI::App* each : commands) {
    if (!each->get_group().empty() &&
        std::ranges::find(groups, each->get_group()) == groups.end()) {
      groups.push_back(each->get_group());
    }
  }
  std::string out;
  for (const std::string& group : groups) {
    std::string lines;
    for (const CLI::App* each : commands) {
      if (each->get_group() == group) {
        lines += lineOf(each->get_name(), each->get_description());
      }
    }
    if (!lines.empty()) {
      out +=
          (out.empty() ? "\n" : "") + (group == "Subcommands" ? "Commands" : group) + ":\n" + lines;
    }
  }
  return out;
}

}  // namespace kelvarin
