#include <gtest/gtest.h>

#include "expression/help/unknown_name_hint.h"

namespace kelvarin {
namespace {

using Kind = ExpressionError::Kind;

ExpressionError undefined(const char* name) {
  return {.message = "", .token = QLatin1String(name), .kind = Kind::undefinedName};
}

ExpressionError unexpectedBracket(int position) {
  return {.message = "", .position = position, .token = "(", .kind = Kind::unexpectedToken};
}

QString hint(const ExpressionError& error, const char* expression = "") {
  return unknownNameHint(error, QString::fromUtf8(expression), {"total"}, {"total", "price"});
}

TEST(UnknownNameHint, SaysWhatANameMayHaveBeenMeantFor) {
  EXPECT_TRUE(hint(undefined("price")).contains("Add <InputVar column='price'/>"));
  EXPECT_TRUE(hint(undefined("totl")).contains("Did you mean total?"));
  EXPECT_TRUE(hint(undefined("zzzzzzzz")).contains("'kelvarin functions' lists"));
  EXPECT_TRUE(hint(undefined("_nowS")).contains("addNowS='1'"));
}

TEST(UnknownNameHint, FindsTheFunctionBeforeTheBracketOfTheError) {
  EXPECT_TRUE(hint(unexpectedBracket(10), "1+COALESC (x,1)").contains("COALESC"));
  EXPECT_EQ(hint(unexpectedBracket(10), "2*COALESCE(x,1)"),
            "There is no 'COALESCE' in expressions; use nvl. For more than two values: "
            "nvl(a, nvl(b, c))");
  EXPECT_EQ(hint(unexpectedBracket(9), "1 + 2 *  (3"), QString());
}

TEST(UnknownNameHint, IsSilentAboutOtherFailures) {
  EXPECT_EQ(hint({}), QString());
  EXPECT_EQ(hint(undefined("floor")), QString());
}

}  // namespace
}  // namespace kelvarin
