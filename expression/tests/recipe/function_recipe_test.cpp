// The function that "Add a function" of CONTRIBUTING.md adds is part of the language.
//
// Linked with the sources that add_function.py has changed, and with the tests of cases and help,
// which so meet the new function, too.

#include <gtest/gtest.h>

#include "expression/functions/function_line.h"
#include "expression/help/language_entries.h"

namespace kelvarin {
namespace {

TEST(FunctionRecipe, MakesAFunctionOfAllEnginesWithItsHelp) {
  const LanguageMatch match = findInLanguage("clamp");
  ASSERT_EQ(match.entries.size(), 1u);
  const LanguageEntry& entry = *match.entries.front();
  EXPECT_FALSE(match.isForeign);
  EXPECT_EQ(entry.backends, kInAll);
  EXPECT_EQ(entry.argumentCount, 3);
  EXPECT_EQ(entry.help, "clamp(x,low,high) - x, or the bound that it lies beyond");
  EXPECT_STREQ(entry.entry->result, "5");
  EXPECT_STREQ(entry.entry->secondResult, "1");
}

}  // namespace
}  // namespace kelvarin
