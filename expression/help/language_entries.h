// Everything that an expression may name: the help joined with the function table.
//
// Used by `kelvarin functions` and the hints.
// Threads: read-only after the first call.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "expression/help/help_entry.h"

namespace kelvarin {

struct LanguageEntry {
  std::string name;  // of an operator row, its signs separated by ", "
  HelpKind kind = HelpKind::function;
  const char* group = "";
  const HelpEntry* entry = nullptr;
  std::optional<int>
      argumentCount;      // as declared; empty for any number and for what has no brackets
  unsigned backends = 0;  // flags of function_line.h
  std::string help;
  std::vector<std::string> names;  // by which it is found
};

// In the order of the help, then what the help leaves out.
const std::vector<LanguageEntry>& languageEntries();

// What is near the name that somebody looks for.
struct LanguageMatch {
  std::vector<const LanguageEntry*> entries;
  bool isForeign = false;        // the name is not one of this language
  const char* advice = nullptr;  // how to write what the foreign name does
};

// By the very name, else without regard to case, else by the name it has in spreadsheets, databases
// and programming languages.
LanguageMatch findInLanguage(const std::string& name);

}  // namespace kelvarin
