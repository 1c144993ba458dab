#include "expression/functions/called_functions.h"

#include <gtest/gtest.h>

#include "expression/functions/function_table.h"

namespace kelvarin {
namespace {

TEST(CalledFunctions, NeedsAreThoseOfWholeNamesInFrontOfBrackets) {
  EXPECT_TRUE(dateNeedsOf({"1+toET(x)"}).format);
  EXPECT_TRUE(dateNeedsOf({"1", "etAdd (x,1,2,3)"}).reference);
  EXPECT_FALSE(dateNeedsOf({"etAdd(x,1,2,3)"}).format);
  EXPECT_FALSE(dateNeedsOf({"dateLT(x,y)"}).reference);
  EXPECT_FALSE(dateNeedsOf({"mytoET(x) + toET + \"toET(\\\" toET(\" # toET(x)"}).format);
  EXPECT_FALSE(dateNeedsOf({"\"unterminated \\"}).format);
}

TEST(CalledFunctions, EveryFunctionWithADateOrAnElapsedTimeInItsHelpSaysSo) {
  for (const FunctionLine& line : functionTable()) {
    const QString help = QString::fromLatin1(line.help);
    const bool isOfDates = help.startsWith(QLatin1String("date")) || help.contains("(date)");
    const bool isOfElapsedTimes = help.startsWith(QLatin1String("et")) || help.contains("Elapsed");
    EXPECT_EQ(line.needs.format, isOfDates || help.contains("(ET)")) << line.name;
    EXPECT_EQ(line.needs.reference, isOfElapsedTimes) << line.name;
  }
}

TEST(CalledFunctions, OnlyWhatTheStringParserKnowsIsShownStepByStep) {
  EXPECT_FALSE(undebuggableCall("isNull(x) + sin(x) + isNuLL"));
  const auto call = undebuggableCall("nvl(x, 1) + isNuLL (x)");
  ASSERT_TRUE(call);
  EXPECT_EQ(call->start, 12u);
  EXPECT_EQ(call->size, 6u);
  EXPECT_EQ(debuggableSpelling(u"isNuLL").toStdString(), "isNull");
  EXPECT_EQ(debuggableSpelling(u"nothing").toStdString(), "");
}

// The help says which functions are random or read files.
TEST(CalledFunctions, AreFoundByWhatTheyDependOn) {
  for (const FunctionLine& line : functionTable()) {
    const bool isRandom = QLatin1String(line.help).contains(QLatin1String("random"));
    EXPECT_EQ(line.source == Source::randomNumbers, isRandom) << line.name;
    const bool isOfFile = QLatin1String(line.help).contains(QLatin1String("file"));
    EXPECT_EQ(line.source == Source::files, isOfFile) << line.name;
  }
  EXPECT_FALSE(callOf(Source::files, "strlen(\"load(x)\") + load"));
  const auto call = callOf(Source::files, "strlen(load(s))");
  ASSERT_TRUE(call);
  EXPECT_EQ(call->start, 7u);
}

}  // namespace
}  // namespace kelvarin
