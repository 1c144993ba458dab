// What the help says is true: every example has its result on each back-end that the entry names
// and is refused by the others, and help and function table know the same names.

#include <fstream>
#include <set>

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "expression/functions/function_table.h"
#include "expression/help/foreign_names.h"
#include "expression/help/language_entries.h"
#include "expression/help/tests/example_evaluation.h"

namespace kelvarin {
namespace {

// Declared with fewer arguments than its help shows, in one back-end of three.
bool isKnownException(const LanguageEntry& entry) {
  return entry.name == "atan2";
}

// The working directory, with the file that examples read, as long as it lives.
class ExampleFolder {
 public:
  ExampleFolder() {
    QDir::setCurrent(m_folder.path());
    std::ofstream(kExampleFile) << kExampleFileText;
  }
  ~ExampleFolder() { QDir::setCurrent(m_previous); }
  ExampleFolder(const ExampleFolder&) = delete;
  ExampleFolder& operator=(const ExampleFolder&) = delete;

 private:
  const QString m_previous = QDir::currentPath();
  const QTemporaryDir m_folder;
};

void expectResult(const LanguageEntry& entry, const HelpExample& example) {
  if (isKnownException(entry)) {
    EXPECT_EQ(evaluateExample(example.expression, BackendKind::fast), example.result);
    EXPECT_TRUE(
        evaluateExample(example.expression, BackendKind::string).starts_with(kRefused + "Too"));
    return;
  }
  for (const auto& [flag, kind] :
       {std::pair{kInNative, BackendKind::native}, std::pair{kInFast, BackendKind::fast},
        std::pair{kInString, BackendKind::string}}) {
    const std::string actual = evaluateExample(example.expression, kind);
    if (actual.starts_with(kNoNativeCode)) {
      continue;
    }
    if ((entry.backends & flag) != 0) {
      EXPECT_EQ(actual, example.result)
          << entry.name << ": " << example.expression << " on " << backendLabel(kind);
    } else {
      EXPECT_TRUE(actual.starts_with(kRefused))
          << entry.name << ": " << example.expression << " on " << backendLabel(kind)
          << " results in " << actual;
    }
  }
}

TEST(Help, EveryExampleGivesItsResultWhereTheEntrySaysSo) {
  const ExampleFolder folder;
  for (const LanguageEntry& entry : languageEntries()) {
    for (const HelpExample& example : examplesOf(*entry.entry)) {
      expectResult(entry, example);
    }
  }
}

TEST(Help, EntriesOfTheTreeHaveTwoExamplesThatDiffer) {
  for (const HelpGroup& group : helpGroups()) {
    for (const HelpEntry& entry : group.entries) {
      ASSERT_EQ(examplesOf(entry).size(), 2u) << entry.signature;
      EXPECT_STRNE(entry.example, entry.secondExample);
      EXPECT_NE(entry.secondResult, nullptr) << entry.signature;
    }
  }
}

TEST(Help, HasEveryNameOfTheTablesOnce) {
  std::multiset<std::string> helped;
  for (const LanguageEntry& entry : languageEntries()) {
    EXPECT_NE(entry.backends, 0u) << entry.name;
    if (entry.kind == HelpKind::function || entry.kind == HelpKind::constant) {
      helped.insert(entry.names.front());
    }
  }
  for (const FunctionLine& line : functionTable()) {
    EXPECT_EQ(helped.count(line.name), 1u) << line.name;
  }
  for (const ConstantLine& line : constantTable()) {
    EXPECT_EQ(helped.count(line.name), 1u) << line.name;
  }
  for (const std::string& name : helped) {
    EXPECT_EQ(helped.count(name), 1u) << name;
  }
}

TEST(Help, GroupsAndTheirSlipsStayAsTheyAre) {
  std::string shape;
  for (const HelpGroup& group : helpGroups()) {
    shape += std::string(group.title) + " " + std::to_string(group.entries.size()) + "; ";
  }
  EXPECT_EQ(shape,
            "On Numbers 40; On Strings 27; String Encode/Decode 13; On Dates 26; On IP's 5; "
            "Operators 11; Predefined Constants 13; Postfix operators 6; Special 8; ");
  const auto commentOf = [](const char* name) {
    return std::string(findInLanguage(name).entries.front()->entry->comment);
  };
  EXPECT_EQ(commentOf("cosh"), "hyperbolic sine");
  EXPECT_EQ(commentOf("{G}"), "giga (1e6)");
  EXPECT_EQ(commentOf("log"), "Logarithm base 10");
  EXPECT_EQ(commentOf("_nullS"),
            "the NULL string (meta-type is \"string\")- cannot be used inside any binary operator");
}

TEST(Help, FindsByForeignNames) {
  for (const ForeignName& foreign : foreignNames()) {
    const std::string name(foreign.name);
    const LanguageMatch match = findInLanguage(name);
    EXPECT_TRUE(match.isForeign) << name << " is a name of this language too";
    for (const std::string_view meant : foreign.meant) {
      EXPECT_TRUE(meant.empty() || !findInLanguage(std::string(meant)).isForeign) << name;
    }
    EXPECT_TRUE(!match.entries.empty() || match.advice != nullptr) << name;
  }
  EXPECT_EQ(findInLanguage("coalesce").entries.front()->name, "nvl");
  EXPECT_EQ(findInLanguage("ISNULL").entries.front()->name, "isNull");
  EXPECT_EQ(findInLanguage("-").entries.size(), 2u);
  EXPECT_TRUE(findInLanguage("nosuchthing").entries.empty());
}

}  // namespace
}  // namespace kelvarin
