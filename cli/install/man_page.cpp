#include "cli/install/man_page.h"

#include <algorithm>
#include <cctype>

#include <fmt/format.h>

#include "cli/install/described_options.h"

namespace kelvarin {

namespace {

// A point or a quote at the beginning of a line is a request, a backslash begins an escape, and a
// dash that is typed is no hyphen.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    const bool beginsLine = result.empty() || result.back() == '\n';
    if (beginsLine && (character == '.' || character == '\'')) {
      result += "\\&";
    }
    switch (character) {
      case '\\':
        result += "\\e";
        break;
      case '-':
        result += "\\-";
        break;
      case '\'':
        result += "\\(aq";
        break;
      case '`':
        result += "\\(ga";
        break;
      case '^':
        result += "\\(ha";
        break;
      case '~':
        result += "\\(ti";
        break;
      default:
        result += character;
    }
  }
  return result;
}

std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) {
    return c < 0x80 ? static_cast<char>(std::toupper(c)) : static_cast<char>(c);
  });
  return text;
}

std::string bold(std::string_view text) {
  return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(std::string_view text) {
  return "\\fI" + escaped(text) + "\\fR";
}

std::string usageOf(const CLI::App& command, const std::vector<DescribedOption>& options) {
  std::string usage = bold(fullName(command)) + " [" + italic("OPTIONS") + "]";
  for (const DescribedOption& option : options) {
    if (option.isArgument) {
      const std::string name =
          italic(option.names.front()) + (option.isRepeated ? "\\fR..." : std::string());
      usage += ' ' + (option.isRequired ? name : '[' + name + ']');
    }
  }
  return usage + (describedCommands(command).empty() ? "" : " " + italic("COMMAND") + " ...");
}

std::string headOf(const DescribedOption& option) {
  if (option.isArgument) {
    return italic(option.names.front());
  }
  std::string head;
  for (const std::string& name : option.names) {
    head += (head.empty() ? "" : ", ") + bold(name);
  }
  return option.value.empty() ? head : head + ' ' + italic(option.value);
}

std::string sectionOf(const char* title, const std::vector<DescribedOption>& options,
                      bool areArguments) {
  std::string section;
  for (const DescribedOption& option : options) {
    if (option.isArgument != areArguments) {
      continue;
    }
    section += ".TP\n" + headOf(option) + '\n' + escaped(option.meaning);
    if (!option.preset.empty()) {
      section += escaped(" [" + option.preset + "]");
    }
    if (!option.choices.empty()) {
      section += "; one of";
      for (const std::string& choice : option.choices) {
        section += (&choice == &option.choices.front() ? " " : ", ") + bold(choice);
      }
    }
    if (!option.environment.empty()) {
      section += "; the variable " + bold(option.environment) + " stands for it";
    }
    section += '\n';
  }
  return section.empty() ? section : fmt::format(".SH {}\n{}", title, section);
}

std::string commandsOf(const CLI::App& command) {
  std::string section;
  for (const CLI::App* below : describedCommands(command)) {
    section += fmt::format(".TP\n\\fB{}\\fR(1)\n{}\n", escaped(fullName(*below, '-')),
                           escaped(below->get_description()));
  }
  return section.empty() ? section : ".SH COMMANDS\n" + section;
}

// Without the blanks before each line.
std::string atMargin(std::string_view lines) {
  std::string text;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    const std::string_view line = lines.substr(0, end);
    text += line.substr(std::min(line.find_first_not_of(' '), line.size()));
    lines.remove_prefix(std::min(end + 1, lines.size()));
    text += lines.empty() ? "" : "\n";
  }
  return text;
}

// A paragraph of the help's foot: "Example:" before indented lines, "Exit status: ...", or a text.
std::string sectionOf(const std::string& paragraph) {
  const std::size_t colon = paragraph.find(':');
  const bool hasTitle = colon != std::string::npos && paragraph.find('\n') >= colon &&
                        paragraph.starts_with("Ex") && colon < 20;
  if (!hasTitle) {
    return ".SH NOTES\n.nf\n" + escaped(paragraph) + "\n.fi\n";
  }
  const std::string title = upper(paragraph.substr(0, colon));
  const bool isListing = paragraph[colon + 1] == '\n';
  const std::string body =
      atMargin(std::string_view(paragraph).substr(colon + (isListing ? 2 : 1)));
  return ".SH " + title + '\n' + (isListing ? ".nf\n" : "") + escaped(body) +
         (isListing ? "\n.fi\n" : "\n");
}

std::string footOf(const CLI::App& command) {
  std::string sections;
  const std::string foot = command.get_footer();
  for (std::size_t begin = 0; begin < foot.size();) {
    const std::size_t end = std::min(foot.find("\n\n", begin), foot.size());
    std::string paragraph = foot.substr(begin, end - begin);
    paragraph.erase(paragraph.find_last_not_of('\n') + 1);
    sections += paragraph.empty() ? std::string() : sectionOf(paragraph);
    begin = end + 2;
  }
  return sections;
}

std::string othersOf(const CLI::App& command) {
  const CLI::App* outer = command.get_parent();
  return outer == nullptr ? std::string()
                          : ".SH SEE ALSO\n" + bold(fullName(*outer, '-')) + "(1)\n";
}

}  // namespace

std::string manPageOf(const CLI::App& command, const std::string& version) {
  const std::string name = fullName(command, '-');
  const std::vector<DescribedOption> options = describedOptions(command);
  std::string page = fmt::format(".TH {} 1 \"\" \"{}\" \"User Commands\"\n", upper(escaped(name)),
                                 escaped(version));
  std::string summary = command.get_description();
  summary.erase(summary.find_last_not_of(".\n") + 1);
  page += fmt::format(".SH NAME\n{} \\- {}\n", escaped(name), escaped(summary));
  page += ".SH SYNOPSIS\n" + usageOf(command, options) + '\n';
  page += sectionOf("ARGUMENTS", options, true) + commandsOf(command) +
          sectionOf("OPTIONS", options, false);
  return page + footOf(command) + othersOf(command);
}

}  // namespace kelvarin
