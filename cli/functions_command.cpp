// `kelvarin functions`: the functions, constants and operators of the expression language.
#include <algorithm>
#include <cstdio>
#include <span>

#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/messages.h"
#include "cli/value_json.h"
#include "expression/errors/backend_kind.h"
#include "expression/functions/function_line.h"
#include "expression/help/foreign_names.h"
#include "expression/help/language_entries.h"
#include "expression/help/language_search.h"
#include "host/contract/nearest_names.h"

namespace kelvarin {

namespace {

using Entries = std::vector<const LanguageEntry*>;

constexpr std::pair<unsigned, BackendKind> kBackendFlags[] = {{kInNative, BackendKind::native},
                                                              {kInFast, BackendKind::fast},
                                                              {kInString, BackendKind::string}};

QStringList labelsOf(unsigned backends) {
  QStringList labels;
  for (const auto& [flag, kind] : kBackendFlags) {
    if ((backends & flag) != 0) {
      labels.append(QLatin1String(backendLabel(kind)));
    }
  }
  return labels;
}

const char* wordOf(HelpKind kind) {
  switch (kind) {
    case HelpKind::function:
      return "function";
    case HelpKind::constant:
      return "constant";
    case HelpKind::sign:
      return "operator";
    case HelpKind::postfix:
      break;
  }
  return "postfix";
}

Json described(const LanguageEntry& entry) {
  Json object = {{"name", entry.name},   {"kind", wordOf(entry.kind)},
                 {"group", entry.group}, {"signature", entry.entry->signature},
                 {"args", nullptr},      {"backends", jsonOf(labelsOf(entry.backends))},
                 {"help", entry.help},   {"comment", entry.entry->comment}};
  if (entry.argumentCount) {
    object["args"] = *entry.argumentCount;
  }
  return object;
}

// A reader that went away is no failure here, so nothing is thrown where the stream is closed.
template <typename... Arguments>
void print(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
  std::fputs(fmt::format(format, std::forward<Arguments>(arguments)...).c_str(), stdout);
}

void printJson(const Entries& entries) {
  Json list = Json::array();
  for (const LanguageEntry* entry : entries) {
    list.push_back(described(*entry));
  }
  std::fputs(printed(list).c_str(), stdout);
}

void printField(const char* field, const std::string& text) {
  if (!text.empty()) {
    print("  {:<11}{}\n", field, text);
  }
}

std::string exampleSettings() {
  return fmt::format("--opt dateFormat={} --opt referenceTime='{}' --opt elapsedTimeUnit={}",
                     kExampleSettings.dateFormat, kExampleSettings.referenceTime,
                     kExampleSettings.elapsedTimeUnit);
}

std::string settingsOf(const LanguageEntry& entry) {
  const std::string_view example = entry.entry->example;
  const bool isAboutDates =
      std::string_view(entry.group) == "On Dates" || example.find("_now") != std::string_view::npos;
  return isAboutDates && entry.name != "nDaysInMonth" ? exampleSettings() : std::string();
}

void printWhole(const LanguageEntry& entry) {
  const HelpEntry& help = *entry.entry;
  const bool isFunction = entry.kind == HelpKind::function;
  print("{}\n", entry.help);
  const bool isInHelp = QByteArrayView(entry.help).endsWith(QByteArrayView(help.comment));
  printField("Comment", isInHelp ? "" : help.comment);
  printField("Group", entry.group);
  printField("Arguments", entry.argumentCount ? std::to_string(*entry.argumentCount)
                          : isFunction        ? "one or more"
                                              : "");
  printField("Back-ends", labelsOf(entry.backends).join(QLatin1String(", ")).toStdString());
  printField("Null", help.nulls == nullptr ? "" : help.nulls);
  for (const HelpExample& example : examplesOf(help)) {
    printField("Example", fmt::format("{}  gives  {}", example.expression, example.result));
  }
  printField("Settings", settingsOf(entry));
  printField("Note", help.note == nullptr ? "" : help.note);
}

// A digit for each of the engines, in the order in which they are tried.
std::string marksOf(unsigned backends) {
  std::string marks;
  char digit = '1';
  for (const auto& [flag, kind] : kBackendFlags) {
    marks += (backends & flag) != 0 ? digit : '-';
    ++digit;
  }
  return marks;
}

void printLine(const LanguageEntry& entry) {
  print("  {}  {:<31}{}\n", marksOf(entry.backends), entry.entry->signature, entry.entry->comment);
}

void printAll(const Entries& entries) {
  const char* group = "";
  for (const LanguageEntry* entry : entries) {
    if (std::string_view(group) != entry->group) {
      print("{}{}\n", *group == 0 ? "" : "\n", entry->group);
      group = entry->group;
    }
    printLine(*entry);
  }
  print("\n1 {}, 2 {}, 3 {}: the back-ends that have it.\n{}\n{}\n",
        backendLabel(BackendKind::native), backendLabel(BackendKind::fast),
        backendLabel(BackendKind::string), kParametersRemark, program_messages::moreHint());
}

ExitStatus reportUnknown(const QString& name) {
  QString text = program_messages::unknownFunction(name);
  QStringList known;
  for (const LanguageEntry& entry : languageEntries()) {
    for (const std::string& spelling : entry.names) {
      known += QString::fromStdString(spelling);
    }
  }
  for (const ForeignName& foreign : foreignNames()) {
    known += QString::fromUtf8(foreign.name.data(), static_cast<qsizetype>(foreign.name.size()))
                 .toLower();
  }
  known.removeDuplicates();
  const QStringList near = nearestNames(name, known);
  text += u' ' + (near.isEmpty() ? program_messages::listHint()
                                 : program_messages::didYouMean(near.join(QLatin1String(" or "))));
  Console(false).writeLog(LogLevel::error, text);
  return ExitStatus::failed;
}

// What else belongs to the words, best first.
ExitStatus showFound(const std::string& words, bool isJson) {
  const Entries found = searchLanguage(words);
  if (found.empty()) {
    return reportUnknown(QString::fromStdString(words));
  }
  if (isJson) {
    printJson(found);
    return ExitStatus::done;
  }
  constexpr std::size_t kShown = 20;
  for (const LanguageEntry* entry : std::span(found).first(std::min(kShown, found.size()))) {
    printLine(*entry);
  }
  if (found.size() > kShown) {
    print("  ... and {} more\n", found.size() - kShown);
  }
  print("\n{}\n", program_messages::moreHint());
  return ExitStatus::done;
}

// Others whose names have the name in them.
void printRelatives(const std::string& name, const Entries& shown) {
  constexpr qsizetype kShown = 8;
  QStringList names;
  for (const LanguageEntry* entry : searchLanguage(name)) {
    const QString other = QString::fromStdString(entry->name);
    const bool isNamedSo = other.contains(QString::fromStdString(name), Qt::CaseInsensitive);
    const bool isNew = std::ranges::find(shown, entry) == shown.end() &&
                       !names.contains(other, Qt::CaseInsensitive);
    if (isNamedSo && isNew && names.size() < kShown) {
      names += other;
    }
  }
  printField("See also", names.join(QStringLiteral(", ")).toStdString());
}

ExitStatus showNamed(const std::string& name, bool isJson) {
  const LanguageMatch match = findInLanguage(name);
  const QString given = QString::fromStdString(name);
  if (match.entries.empty() && match.advice == nullptr) {
    return showFound(name, isJson);
  }
  const QString advice = QString::fromUtf8(match.advice == nullptr ? "" : match.advice);
  if (match.entries.empty()) {
    Console(false).writeLog(LogLevel::error, program_messages::nothingLikeIt(given, advice));
    return ExitStatus::failed;
  }
  if (isJson) {
    printJson(match.entries);
    return ExitStatus::done;
  }
  if (match.isForeign) {
    const QString remark = program_messages::calledHere(given);
    print("{}\n{}\n", remark.toStdString(),
          advice.isEmpty() ? "" : "  " + advice.toStdString() + "\n");
  }
  for (const LanguageEntry* entry : match.entries) {
    print("{}", entry == match.entries.front() ? "" : "\n");
    printWhole(*entry);
  }
  printRelatives(name, match.entries);
  return ExitStatus::done;
}

ExitStatus listAll(bool isJson) {
  Entries all;
  for (const LanguageEntry& entry : languageEntries()) {
    all.push_back(&entry);
  }
  if (isJson) {
    printJson(all);
  } else {
    printAll(all);
  }
  return ExitStatus::done;
}

}  // namespace

void addFunctionsCommand(CLI::App& program, ChosenCommand& chosen) {
  struct Arguments {
    std::vector<std::string> words;
    bool isJson = false;
  };
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command = program.add_subcommand(
      "functions", "List the functions, constants and operators of the expression language");
  command
      ->add_option(
          "NAME", arguments->words,
          "this one, also by its name in spreadsheets and databases; or words to search for")
      ->type_name("");
  command->add_flag("--json", arguments->isJson, "print a JSON array");
  command->footer("Examples:\n  kelvarin functions nvl\n  kelvarin functions \"days between\"");
  command->callback([arguments, &chosen] {
    chosen = [arguments] {
      std::string words;
      for (const std::string& word : arguments->words) {
        words += (words.empty() ? "" : " ") + word;
      }
      return words.empty() ? listAll(arguments->isJson) : showNamed(words, arguments->isJson);
    };
  });
}

}  // namespace kelvarin
