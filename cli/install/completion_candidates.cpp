#include "cli/install/completion_candidates.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "cli/graph_run.h"
#include "cli/install/described_options.h"
#include "cli/install/file_columns.h"
#include "cli/install/graph_names.h"
#include "expression/help/language_entries.h"

namespace kelvarin {

namespace {

// What has been typed so far.
struct TypedLine {
  const CLI::App* command = nullptr;
  std::vector<std::string> arguments;  // of the command, without options and their values
  DescribedOption pending;             // the option whose value comes next, without names for none
  bool endsOptions = false;            // behind --
};

const CLI::App* commandNamed(const CLI::App& outer, const std::string& name) {
  for (const CLI::App* command : describedCommands(outer)) {
    if (command->check_name(name)) {
      return command;
    }
  }
  return nullptr;
}

DescribedOption optionNamed(const CLI::App& command, const std::string& name) {
  for (const DescribedOption& option : describedOptions(command)) {
    if (!option.isArgument &&
        std::find(option.names.begin(), option.names.end(), name) != option.names.end()) {
      return option;
    }
  }
  return {};
}

void read(TypedLine& line, const std::string& word) {
  if (!line.pending.names.empty()) {
    line.pending = {};
    return;
  }
  if (word == "--") {
    line.endsOptions = true;
    return;
  }
  if (!line.endsOptions && word.size() > 1 && word.front() == '-') {
    const DescribedOption option = optionNamed(*line.command, word);
    if (!option.value.empty()) {
      line.pending = option;
    }
    return;
  }
  const CLI::App* below = line.arguments.empty() ? commandNamed(*line.command, word) : nullptr;
  if (below != nullptr) {
    line.command = below;
  } else {
    line.arguments.push_back(word);
  }
}

std::string firstFile(const TypedLine& line) {
  for (const std::string& argument : line.arguments) {
    std::error_code error;
    if (std::filesystem::is_regular_file(argument, error)) {
      return argument;
    }
  }
  return {};
}

// Adds what begins as the word that is typed.
class Collector {
 public:
  Collector(Candidates& candidates, std::string typed)
      : m_candidates(candidates), m_typed(std::move(typed)) {}

  void add(const std::string& word, const std::string& meaning) {
    if (word.starts_with(m_typed)) {
      m_candidates.words.push_back({word, meaning});
    }
  }

  void addNames(const std::vector<NamedText>& names, const char* behind = "") {
    for (const NamedText& named : names) {
      add(named.name.toStdString() + behind, named.text.toStdString());
    }
  }

  void setFiles(Candidates::Files files) { m_candidates.files = files; }
  const std::string& typed() const { return m_typed; }

 private:
  Candidates& m_candidates;
  std::string m_typed;
};

bool isPartOfName(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return std::isalnum(byte) != 0 || character == '_' || byte >= 0x80;
}

// `before` is what stands before the name.
void addColumns(Collector& collector, const TypedLine& line, const std::string& before) {
  for (const QString& column : columnsOfFile(firstFile(line))) {
    collector.add(before + column.toStdString(), "column");
  }
}

void addFunctions(Collector& collector, const std::string& before, const char* bracket) {
  for (const LanguageEntry& entry : languageEntries()) {
    const bool isFunction = entry.kind == HelpKind::function;
    if (isFunction || entry.kind == HelpKind::constant) {
      collector.add(before + entry.name + (isFunction ? bracket : ""), entry.entry->comment);
    }
  }
}

// The name at the end of what is typed: of a column, a function or a constant.
void addExpression(Collector& collector, const TypedLine& line) {
  const std::string& typed = collector.typed();
  std::size_t begin = typed.size();
  while (begin > 0 && isPartOfName(typed[begin - 1])) {
    --begin;
  }
  addColumns(collector, line, typed.substr(0, begin));
  addFunctions(collector, typed.substr(0, begin), "(");
}

// Of a list that is separated by commas the last one.
void addColumnList(Collector& collector, const TypedLine& line) {
  const std::string& typed = collector.typed();
  addColumns(collector, line, typed.substr(0, typed.rfind(',') + 1));
}

void addActionTypes(Collector& collector) {
  const auto catalogue = loadCatalogue({}, nullptr);
  if (!catalogue) {
    return;
  }
  for (const CatalogueEntry& entry : (*catalogue)->entries()) {
    collector.add(entry.typeName.toStdString(), entry.toolTip.toStdString());
  }
}

// NAME of `functions` and of `actions`.
void addNamesOf(Collector& collector, const TypedLine& line) {
  if (line.command->get_name() == "actions") {
    addActionTypes(collector);
  } else if (line.command->get_name() == "functions") {
    addFunctions(collector, {}, "");
  }
}

bool holds(const std::string& value, const char* word) {
  return value.find(word) != std::string::npos;
}

// By the word that the help has for what is taken.
void addValues(Collector& collector, const TypedLine& line, const DescribedOption& option) {
  using Files = Candidates::Files;
  for (const std::string& choice : option.choices) {
    collector.add(choice, {});
  }
  const std::string& value = option.value;
  if (value == "NAME") {
    addNamesOf(collector, line);
  } else if (value == "NAME=VALUE") {
    collector.addNames(namesInGraph(firstFile(line)).parameters, "=");
  } else if (holds(value, "ACTION")) {
    collector.addNames(namesInGraph(firstFile(line)).actions);
  } else if (holds(value, "COLUMN")) {
    addColumnList(collector, line);
  } else if (holds(value, "EXPR")) {
    addExpression(collector, line);
  } else if (holds(value, "DIR") || holds(value, "FOLDER")) {
    collector.setFiles(Files::folders);
  } else if (holds(value, "FILE") || value == "IN" || value == "OUT" || value == "A" ||
             value == "B") {
    collector.setFiles(Files::all);
  } else if (holds(value, "GRAPH")) {
    collector.setFiles(Files::graphs);
  }
}

void addOptions(Collector& collector, const CLI::App& command) {
  for (const DescribedOption& option : describedOptions(command)) {
    if (!option.isArgument) {
      for (const std::string& name : option.names) {
        collector.add(name, option.meaning);
      }
    }
  }
}

// The argument that the next word is for; the last one takes all that is left where it repeats.
void addArguments(Collector& collector, const TypedLine& line) {
  std::vector<DescribedOption> arguments = describedOptions(*line.command);
  std::erase_if(arguments, [](const DescribedOption& option) { return !option.isArgument; });
  const std::size_t index = line.arguments.size();
  if (index < arguments.size()) {
    addValues(collector, line, arguments[index]);
  } else if (!arguments.empty() && arguments.back().isRepeated) {
    addValues(collector, line, arguments.back());
  }
  if (line.arguments.empty()) {
    for (const CLI::App* command : describedCommands(*line.command)) {
      collector.add(command->get_name(), command->get_description());
    }
  }
}

// As the shell passes it on while the quotes are open.
std::string withoutOpenQuote(const std::string& word) {
  const bool isQuoted = !word.empty() && (word.front() == '\'' || word.front() == '"');
  return isQuoted ? word.substr(1) : word;
}

}  // namespace

Candidates candidatesFor(const CLI::App& program, const std::vector<std::string>& words) {
  Candidates candidates;
  TypedLine line;
  line.command = &program;
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    read(line, words[i]);
  }
  const std::string typed = words.empty() ? std::string() : withoutOpenQuote(words.back());
  const bool isOption = !line.endsOptions && typed.starts_with('-') && line.pending.names.empty();
  const std::size_t equals = typed.find('=');
  if (isOption && equals != std::string::npos) {
    Collector collector(candidates, typed.substr(equals + 1));
    addValues(collector, line, optionNamed(*line.command, typed.substr(0, equals)));
    return candidates;
  }
  Collector collector(candidates, typed);
  if (!line.pending.names.empty()) {
    addValues(collector, line, line.pending);
  } else if (isOption) {
    addOptions(collector, *line.command);
  } else {
    addArguments(collector, line);
  }
  return candidates;
}

}  // namespace kelvarin
