// `kelvarin help` and `kelvarin version`.
#include <cstdio>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/csv_options.h"
#include "cli/help/help_topics.h"
#include "cli/help/messages.h"
#include "cli/reports/report_options.h"
#include "host/contract/nearest_names.h"

namespace kelvarin {

namespace {

void print(const std::string& text) {
  std::fputs(text.c_str(), stdout);
}

// Null where there is none.
const CLI::App* commandNamed(const CLI::App& parent, const std::string& name) {
  const auto named =
      parent.get_subcommands([&name](const CLI::App* each) { return each->get_name() == name; });
  return named.empty() ? nullptr : named.front();
}

// The words lead from command to command: "gel", "info". Null where one of them is unknown.
const CLI::App* findCommand(const CLI::App& program, const std::vector<std::string>& words) {
  const CLI::App* command = &program;
  for (const std::string& word : words) {
    command = commandNamed(*command, word);
    if (command == nullptr) {
      return nullptr;
    }
  }
  return command;
}

QStringList namesBelow(const CLI::App& command) {
  QStringList names;
  for (const CLI::App* each : command.get_subcommands([](const CLI::App*) { return true; })) {
    names += QString::fromStdString(each->get_name());
  }
  return names;
}

// The library would explain the command that was given, which is this one.
std::string helpOf(const CLI::App& command, const std::string& name) {
  return command.get_formatter()->make_help(&command, name, CLI::AppFormatMode::Normal);
}

// The options that a topic explains: a group of those of a command.
struct ExplainedOptions {
  const char* topic;
  std::string group;
  std::vector<std::string> command;
};

void printOptionsOfTopic(const CLI::App& program, const std::string& topic) {
  const ExplainedOptions known[] = {{"csv", kCsvOptionsGroup, {"gel", "import"}},
                                    {"reports", kReportOptionsGroup, {"run"}}};
  for (const ExplainedOptions& explained : known) {
    const CLI::App* command = findCommand(program, explained.command);
    const auto* layout = dynamic_cast<const CLI::Formatter*>(program.get_formatter().get());
    if (explained.topic != topic || command == nullptr || layout == nullptr) {
      continue;
    }
    print("\nOptions of commands:\n");
    for (const CLI::Option* option : command->get_options([&explained](const CLI::Option* each) {
           return each->get_group() == explained.group;
         })) {
      print(layout->make_option(option, false));
    }
  }
}

void printOverview(const CLI::App& program, const std::vector<HelpTopic>& topics) {
  print(helpOf(program, program.get_name()));
  print("\nTopics, each a short page of 'kelvarin help TOPIC':\n");
  for (const HelpTopic& topic : topics) {
    const QString line = QStringLiteral("  %1 %2\n")
                             .arg(QLatin1String(topic.name), -27)
                             .arg(QLatin1String(topic.title));
    print(line.toStdString());
  }
}

ExitStatus reportUnknown(const CLI::App& program, const std::vector<std::string>& words,
                         const std::vector<HelpTopic>& topics) {
  const CLI::App* known = &program;
  std::size_t depth = 0;
  while (const CLI::App* next =
             depth < words.size() ? commandNamed(*known, words[depth]) : nullptr) {
    known = next;
    ++depth;
  }
  const QString given = QString::fromStdString(words[depth]);
  QStringList names = namesBelow(*known);
  if (depth == 0) {
    for (const HelpTopic& topic : topics) {
      names += QString::fromLatin1(topic.name);
    }
  }
  Console console(false);
  const QString near = nearestNames(given, names).join(QStringLiteral(" or "));
  console.writeLog(LogLevel::error, help_messages::unknownTopic(given, near));
  console.write(help_messages::listHint().toStdString() + '\n');
  return ExitStatus::wrongUsage;
}

ExitStatus help(const CLI::App& program, const std::vector<std::string>& words) {
  const std::vector<HelpTopic> topics = helpTopics();
  if (words.empty()) {
    printOverview(program, topics);
    return ExitStatus::done;
  }
  if (const CLI::App* command = findCommand(program, words)) {
    std::string name = program.get_name();
    for (const std::string& word : words) {
      name += ' ' + word;
    }
    print(helpOf(*command, name));
    return ExitStatus::done;
  }
  std::string name = words.front();
  for (std::size_t i = 1; i < words.size(); ++i) {
    name += ' ' + words[i];
  }
  if (const HelpTopic* topic = findTopic(topics, name)) {
    print(topic->text);
    printOptionsOfTopic(program, topic->name);
    return ExitStatus::done;
  }
  return reportUnknown(program, words, topics);
}

}  // namespace

void addHelpCommand(CLI::App& program, ChosenCommand& chosen) {
  auto words = std::make_shared<std::vector<std::string>>();
  CLI::App* command =
      program.add_subcommand("help", "Explain a command or a topic; alone, list both");
  command->add_option("TOPIC", *words, "a command, such as gel info, or a topic, such as dates")
      ->type_name("");
  command->footer("Examples:\n  kelvarin help dates\n  kelvarin help gel info");
  command->callback(
      [words, &program, &chosen] { chosen = [words, &program] { return help(program, *words); }; });
}

void addVersionCommand(CLI::App& program, ChosenCommand& chosen) {
  CLI::App* command =
      program.add_subcommand("version", "Print the version, as --version and -V do");
  command->footer("Examples:\n  kelvarin version\n  kelvarin --version");
  command->callback([&program, &chosen] {
    chosen = [&program] {
      print(program.version() + '\n');
      return ExitStatus::done;
    };
  });
}

}  // namespace kelvarin
