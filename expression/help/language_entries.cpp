#include "expression/help/language_entries.h"

#include <algorithm>
#include <functional>
#include <string_view>

#include "expression/functions/function_table.h"
#include "expression/help/foreign_names.h"

namespace kelvarin {

namespace {

// What the expression libraries bring, by the first name of its help line.
struct LibraryName {
  std::string_view name;
  int argumentCount;  // below 0: none to count
  unsigned backends;
};

constexpr int kNoCount = -1;
constexpr unsigned kFastAndString = kInFast | kInString;

constexpr LibraryName kLibraryNames[] = {
    {"sin", 1, kInAll},
    {"cos", 1, kInAll},
    {"tan", 1, kInAll},
    {"asin", 1, kInAll},
    {"acos", 1, kInAll},
    {"atan", 1, kInAll},
    {"sinh", 1, kInAll},
    {"cosh", 1, kInAll},
    {"tanh", 1, kInAll},
    {"ln", 1, kInAll},
    {"log", 1, kInAll},
    {"log10", 1, kInAll},
    {"exp", 1, kInAll},
    {"sqrt", 1, kInAll},
    {"?:", kNoCount, kInAll},
    {"-", kNoCount, kInAll},
    {"(float)", kNoCount, kFastAndString},
    {"(int)", kNoCount, kFastAndString},
    {"+", kNoCount, kInAll},
    {"%", kNoCount, kInAll},
    {"&&", kNoCount, kInAll},
    {"||", kNoCount, kInAll},
    {"==", kNoCount, kInAll},
    {"&", kNoCount, kFastAndString},
    {"//", kNoCount, kInString},
    {"!", kNoCount, kInString},
    {"_n", kNoCount, kInAll},
    {"_now", kNoCount, kInAll},
    {"_nowS", kNoCount, kInString},
    {"true", kNoCount, kInString},
    {"false", kNoCount, kInString},
    {"{n}", kNoCount, kInAll},
    {"{mu}", kNoCount, kInAll},
    {"{m}", kNoCount, kInAll},
    {"{k}", kNoCount, kInAll},
    {"{G}", kNoCount, kInAll},
    {"{M}", kNoCount, kInAll},
};

std::vector<std::string> namesOf(const HelpEntry& entry) {
  const std::string_view signature = entry.signature;
  if (entry.names == nullptr) {
    // A signature that starts with its bracket is a sign.
    const std::size_t bracket = signature.find('(');
    const bool hasArguments = bracket != 0 && bracket != std::string_view::npos;
    return {std::string(hasArguments ? signature.substr(0, bracket) : signature)};
  }
  std::vector<std::string> names;
  std::string_view rest = entry.names;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    names.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return names;
}

std::string titleOf(const HelpEntry& entry, const std::vector<std::string>& names) {
  const std::string_view signature = entry.signature;
  const bool isRow = signature.find(", ") != std::string_view::npos;
  return isRow ? std::string(signature) : names.front();
}

template <typename Table>
auto lineOf(const Table& table, const std::string& name) {
  const auto found =
      std::find_if(table.begin(), table.end(), [&](const auto& line) { return name == line.name; });
  return found == table.end() ? nullptr : &*found;
}

LanguageEntry joined(const HelpGroup& group, const HelpEntry& entry) {
  LanguageEntry made;
  made.names = namesOf(entry);
  made.name = titleOf(entry, made.names);
  made.kind = group.kind;
  made.group = group.title;
  made.entry = &entry;
  made.help = std::string(entry.signature) + " - " + entry.comment;
  const std::string& name = made.names.front();
  if (const FunctionLine* line = lineOf(functionTable(), name)) {
    made.backends = line->backends;
    made.help = line->help;
    if (line->argumentCount >= 0) {
      made.argumentCount = line->argumentCount;
    }
  } else if (const ConstantLine* constant = lineOf(constantTable(), name)) {
    made.backends = constant->backends;
  } else if (const LibraryName* library = lineOf(std::span(kLibraryNames), name)) {
    made.backends = library->backends;
    if (library->argumentCount >= 0) {
      made.argumentCount = library->argumentCount;
    }
  }
  return made;
}

std::vector<LanguageEntry> joinAll() {
  std::vector<LanguageEntry> entries;
  for (const std::span<const HelpGroup> groups : {helpGroups(), furtherGroups()}) {
    for (const HelpGroup& group : groups) {
      for (const HelpEntry& entry : group.entries) {
        entries.push_back(joined(group, entry));
      }
    }
  }
  return entries;
}

bool isSameIgnoringCase(std::string_view a, std::string_view b) {
  return QLatin1String(a.data(), static_cast<qsizetype>(a.size()))
             .compare(QLatin1String(b.data(), static_cast<qsizetype>(b.size())),
                      Qt::CaseInsensitive) == 0;
}

template <typename IsSame>
std::vector<const LanguageEntry*> entriesNamed(const std::string& name, IsSame isSame) {
  std::vector<const LanguageEntry*> found;
  for (const LanguageEntry& entry : languageEntries()) {
    const bool isNamed = std::any_of(entry.names.begin(), entry.names.end(),
                                     [&](const std::string& known) { return isSame(known, name); });
    if (isNamed || isSame(entry.name, name)) {
      found.push_back(&entry);
    }
  }
  return found;
}

}  // namespace

const std::vector<LanguageEntry>& languageEntries() {
  static const std::vector<LanguageEntry> entries = joinAll();
  return entries;
}

LanguageMatch findInLanguage(const std::string& name) {
  LanguageMatch match;
  match.entries = entriesNamed(name, std::equal_to<>());
  if (match.entries.empty()) {
    match.entries = entriesNamed(name, isSameIgnoringCase);
    match.entries.resize(std::min<std::size_t>(match.entries.size(), 1));  // spellings of one
  }
  if (!match.entries.empty()) {
    return match;
  }
  for (const ForeignName& foreign : foreignNames()) {
    if (!isSameIgnoringCase(foreign.name, name)) {
      continue;
    }
    match.isForeign = true;
    match.advice = foreign.advice;
    for (const std::string_view meant : foreign.meant) {
      const auto found = entriesNamed(std::string(meant), std::equal_to<>());
      match.entries.insert(match.entries.end(), found.begin(), found.end());
    }
  }
  return match;
}

}  // namespace kelvarin
