// What people type leads to the entry that they mean.
#include <gtest/gtest.h>

#include "ui/help_browser/help_details.h"
#include "ui/help_browser/help_search.h"

namespace kelvarin {
namespace {

const HelpSearch& plainSearch() {
  static const HelpSearch search([](const char* text) { return QString::fromUtf8(text); });
  return search;
}

std::string first(const char* query) {
  const HelpFinds finds = plainSearch().find(QString::fromUtf8(query));
  return finds.entries.empty() ? "" : finds.entries.front()->name;
}

TEST(HelpSearch, PutsWhatIsMeantFirst) {
  const std::pair<const char*, const char*> kCases[] = {
      {"round", "round"},
      {"ROUNDUP", "roundUp"},
      {"roundDo", "roundDown"},
      {"days between", "dateDiffInDay"},
      {"number of months between dates", "dateDiffInMonth"},
      {"IFNULL", "nvl"},
      {"len", "strlen"},
      {"upper case", "toupper"},
      {"week of date", "dateWeekNumber"},
      {"distance", "hdist"},
      {"join texts", "//"},
      {"trim spaces", "trim"},
      {"&&", "&&"},
      {"<>", "==, !=, >, <, <=, >="},
      {"eulerian", "e"},
      {"sinh", "sinh"},
      {"isMissing", "isMissing"},
  };
  for (const auto& [query, name] : kCases) {
    EXPECT_EQ(first(query), name) << query;
  }
}

TEST(HelpSearch, SaysWhatAForeignNameIsCalledHere) {
  const HelpFinds year = plainSearch().find(QStringLiteral(" Year "));
  EXPECT_EQ(year.foreignName, "Year");
  EXPECT_EQ(year.entries.front()->name, "datePrint");
  EXPECT_TRUE(year.advice.contains("yyyy"));
  const HelpFinds count = plainSearch().find(QStringLiteral("SUMIF"));
  EXPECT_EQ(count.foreignName, "SUMIF");
  EXPECT_FALSE(count.advice.isEmpty());
}

TEST(HelpSearch, GuessesWhereNothingFits) {
  const HelpFinds guesses = plainSearch().find(QStringLiteral("flooor"));
  EXPECT_TRUE(guesses.areGuesses);
  EXPECT_EQ(guesses.entries.front()->name, "floor");
  EXPECT_TRUE(plainSearch().find(QStringLiteral("qqqqqqqqq")).entries.empty());
  EXPECT_TRUE(plainSearch().find(QStringLiteral("  ")).entries.empty());
}

TEST(HelpSearch, FindsTranslatedComments) {
  const HelpSearch german([](const char* text) {
    return std::string_view(text) == "cube root of x" ? QStringLiteral("Kubikwurzel von x")
                                                      : QString::fromUtf8(text);
  });
  EXPECT_EQ(german.find(QStringLiteral("kubikwurzel")).entries.front()->name, "cbrt");
  EXPECT_EQ(german.find(QStringLiteral("cube root")).entries.front()->name, "cbrt");
}

TEST(HelpDetails, InsertsWhatAnExpressionCanTake) {
  const auto insertions = [](const char* name) {
    return insertionsOf(*findInLanguage(name).entries.front());
  };
  EXPECT_EQ(insertions("nvl"), QStringList{"nvl()"});
  EXPECT_EQ(insertions("?:"), QStringList{"( ? : )"});
  EXPECT_EQ(insertions("+").front(), " + ");
  EXPECT_EQ(insertions("<=").size(), 6);
  EXPECT_EQ(insertions("(int)"), QStringList{"(int)"});
  EXPECT_EQ(insertions("{k}"), QStringList{"{k}"});
  EXPECT_EQ(insertions("pi"), QStringList{"pi"});
}

TEST(HelpDetails, TellTheWholeStory) {
  const QString details = detailsOf(*findInLanguage("{G}").entries.front());
  EXPECT_TRUE(details.contains("giga (1e6)"));
  EXPECT_TRUE(details.contains("It multiplies by 1e9."));
  EXPECT_TRUE(details.contains("5000000000"));
  const QString comparison = detailsOf(*findInLanguage("<").entries.front());
  EXPECT_TRUE(comparison.contains("&lt;=") && !comparison.contains("<=<"));
}

}  // namespace
}  // namespace kelvarin
