// `kelvarin functions`: the functions and constants of the expression language.
#include <algorithm>
#include <cstdio>
#include <optional>

#include <fmt/format.h>

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/messages.h"
#include "cli/value_json.h"
#include "expression/backends/backend_kind.h"
#include "expression/functions/function_table.h"

namespace kelvarin {

namespace {

struct FunctionEntry {
  std::string name;
  const char* kind;
  std::string signature;
  std::optional<int> argumentCount;  // empty: not called with arguments
  unsigned backends;
  std::string help;
};

// The help text begins with the call as a user writes it, then " - ".
std::string signatureOf(const char* help, const char* name) {
  const std::string_view text(help);
  const std::size_t end = text.find(" - ");
  return std::string(end == std::string_view::npos ? std::string_view(name) : text.substr(0, end));
}

std::vector<FunctionEntry> allEntries() {
  std::vector<FunctionEntry> entries;
  for (const FunctionLine& line : functionTable()) {
    entries.push_back({line.name, "function", signatureOf(line.help, line.name), line.argumentCount,
                       line.backends, line.help});
  }
  for (const ConstantLine& line : constantTable()) {
    entries.push_back({line.name, "constant", line.name, std::nullopt, line.backends, line.help});
  }
  return entries;
}

QStringList labelsOf(unsigned backends) {
  constexpr std::pair<unsigned, BackendKind> kFlags[] = {
      {kInNative, BackendKind::native}, {kInFast, BackendKind::fast}, {kInString, BackendKind::string}};
  QStringList labels;
  for (const auto& [flag, kind] : kFlags) {
    if ((backends & flag) != 0) {
      labels.append(QLatin1String(backendLabel(kind)));
    }
  }
  return labels;
}

Json described(const FunctionEntry& entry) {
  Json object = {{"name", entry.name},
                           {"kind", entry.kind},
                           {"signature", entry.signature},
                           {"args", nullptr},
                           {"backends", jsonOf(labelsOf(entry.backends))},
                           {"help", entry.help}};
  if (entry.argumentCount) {
    object["args"] = *entry.argumentCount;
  }
  return object;
}

bool isSameIgnoringCase(const std::string& a, const std::string& b) {
  return QString::compare(QString::fromStdString(a), QString::fromStdString(b), Qt::CaseInsensitive) == 0;
}

ExitStatus reportUnknown(const std::string& name, const std::vector<FunctionEntry>& entries) {
  QString text = QString::fromLatin1(program_messages::kUnknownFunction).arg(QString::fromStdString(name));
  for (const FunctionEntry& entry : entries) {
    if (isSameIgnoringCase(entry.name, name)) {
      text += u' ' + QString::fromLatin1(program_messages::kDidYouMean).arg(QString::fromStdString(entry.name));
    }
  }
  Console(false).writeLog(LogLevel::error, text);
  return ExitStatus::failed;
}

void printJson(const std::vector<FunctionEntry>& entries) {
  Json list = Json::array();
  for (const FunctionEntry& entry : entries) {
    list.push_back(described(entry));
  }
  std::fputs(printed(list).c_str(), stdout);
}

void printTable(const std::vector<FunctionEntry>& entries) {
  for (const FunctionEntry& entry : entries) {
    fmt::print("{:<10} {:<14} {}\n{:<26}{}\n", entry.kind, entry.name, entry.help, "",
               labelsOf(entry.backends).join(QLatin1String(", ")).toStdString());
  }
}

ExitStatus listFunctions(const std::string& name, bool isJson) {
  std::vector<FunctionEntry> entries = allEntries();
  if (!name.empty()) {
    std::vector<FunctionEntry> named;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(named),
                 [&name](const FunctionEntry& entry) { return entry.name == name; });
    if (named.empty()) {
      return reportUnknown(name, entries);
    }
    entries = std::move(named);
  }
  if (isJson) {
    printJson(entries);
  } else {
    printTable(entries);
  }
  return ExitStatus::done;
}

}  // namespace

void addFunctionsCommand(CLI::App& program, ChosenCommand& chosen) {
  struct Arguments {
    std::string name;
    bool isJson = false;
  };
  auto arguments = std::make_shared<Arguments>();
  CLI::App* command =
      program.add_subcommand("functions", "List the functions and constants of the expression language");
  command->add_option("NAME", arguments->name, "only this one");
  command->add_flag("--json", arguments->isJson, "print a JSON array");
  command->footer("Example:\n  kelvarin functions nvl");
  command->callback([arguments, &chosen] {
    chosen = [arguments] { return listFunctions(arguments->name, arguments->isJson); };
  });
}

}  // namespace kelvarin
