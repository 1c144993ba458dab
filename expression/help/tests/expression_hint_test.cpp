#include "expression/help/expression_hint.h"

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

const HintNames kNames{{"total", "x", "in"}, {"total", "x", "in", "net price", "2nd"}};

using Kind = ExpressionError::Kind;
using Type = ExpressionError::ValueType;

QString hint(const char* expression, const ExpressionError& error = {}) {
  return expressionHint(error, QString::fromUtf8(expression), kNames);
}

ExpressionError errorOf(Kind kind, const char* token = "", int position = -1) {
  return {.message = "", .position = position, .token = QString::fromUtf8(token), .kind = kind};
}

ExpressionError errorOfTypes(Type found, Type wanted, const char* token = "") {
  ExpressionError error = errorOf(Kind::wrongType, token);
  error.found = found;
  error.wanted = wanted;
  return error;
}

TEST(ExpressionHint, AnswersSignsOfOtherLanguages) {
  const std::pair<const char*, const char*> cases[] = {
      {"x == 'a'", "double quotes"},
      {"x == “a”", "double quotes"},
      {"!x", "not(x)"},
      {"x > 1 && !(x > 2)", "not(x)"},
      {"`x` + 1", "stands alone"},
      {"$x + 1", "stands alone"},
      {"[x] + 1", "stands alone"},
      {"1 + [x]", "stands alone"},
      {"x in (1, 2)", "x == a || x == b"},
      {"x not in (1, 2)", "x == a || x == b"},
      {"x like \"a%\"", "contains"},
      {"x between 1 and 2", "x >= a && x <= b"},
      {"x is null", "isNull(x)"},
      {"x is not null", "not(isNull(x))"},
      {"x ** 2", "x ^ y"},
      {"x <> 1", "!="},
      {"x => 1", ">="},
      {"x =< 1", "<="},
      {"x === 1", "=="},
      {"x × 2", "x * y"},
      {"x ≠ 2", "!="},
      {"max(1; 2)", "commas"},
      {"not x", "not(x)"},
      {"x > 1 then 2 else 3", "condition ? a : b"},
      {"10%", "x / 100"},
      {"x mod 2", "x % y"},
      {"t.x + 1", "no points"},
      {"x > 1 AND x < 2", "small letters"},
      {"if x > 1", "condition ? a : b"},
  };
  for (const auto& [expression, wanted] : cases) {
    EXPECT_TRUE(hint(expression).contains(QString::fromUtf8(wanted)))
        << expression << ": " << hint(expression).toStdString();
  }
}

TEST(ExpressionHint, IsSilentAboutWhatIsAllowed) {
  for (const char* expression :
       {"x != 1", "5!", "x! + 1", "a[1]", "(x)[0]", "x % 2", "\"it's <> [x] !x ; `\"", "in > 3",
        "not(x)", "x >= 1 && x <= 2", "x - -1", "{1,2}[0]", "1.e3 + 2.5", "2.*x"}) {
    EXPECT_EQ(hint(expression), QString()) << expression;
  }
}

TEST(ExpressionHint, SaysWhatTypesAndArgumentsAreWanted) {
  EXPECT_TRUE(hint("s + x", errorOfTypes(Type::text, Type::number, "+")).contains("a // b"));
  EXPECT_TRUE(
      hint("s - x", errorOfTypes(Type::text, Type::number, "-")).startsWith("One value is a text"));
  EXPECT_TRUE(hint("x and in", errorOfTypes(Type::number, Type::condition)).contains("isTrue(x)"));
  EXPECT_TRUE(hint("\"a\" // 1", errorOfTypes(Type::number, Type::text)).contains("itoa"));
  EXPECT_TRUE(hint("(x > 1) + 1", errorOfTypes(Type::condition, Type::number)).contains("&&"));
  EXPECT_TRUE(hint("s", errorOf(Kind::textForNumber)).contains("meta='U'"));
  EXPECT_TRUE(hint("substr(x)", errorOf(Kind::tooFewArguments, "substr"))
                  .contains("How 'substr' is called: "));
  EXPECT_TRUE(hint("3,5 + 1", errorOf(Kind::unexpectedComma)).contains("3.5"));
  EXPECT_TRUE(hint("if(x, 1, 2)", errorOf(Kind::undefinedName, "if", 0))
                  .contains("(condition ? then : else)"));
}

TEST(ExpressionHint, ValuesSideBySideMissAnOperator) {
  const std::tuple<const char*, ExpressionError, const char*> cases[] = {
      {"x 2", errorOf(Kind::unexpectedToken, "2", 2), "x * 2"},
      {"2x", errorOf(Kind::undefinedName, "x", 1), "2 * x"},
      {"x(2)", errorOf(Kind::undefinedName, "x", 0), "x * (...)"},
      {"(x)(2)", errorOf(Kind::unexpectedToken, "(", 3), "(...) * (...)"},
      {"x round(2)", errorOf(Kind::unexpectedToken, "round", 2), "x * round(...)"},
      {"x \"a b\"", errorOf(Kind::unexpectedToken, "\"a b\"", 2), "x // \"a b\""},
  };
  for (const auto& [expression, error, wanted] : cases) {
    const QString text = hint(expression, error);
    EXPECT_TRUE(text.startsWith("An operator is missing") && text.contains(wanted))
        << expression << ": " << text.toStdString();
  }
  EXPECT_FALSE(
      hint("rund(2)", errorOf(Kind::unexpectedToken, "(", 4)).contains("operator is missing"));
  EXPECT_FALSE(hint("(int)\"a\"", errorOf(Kind::unexpectedToken, "\"a\"", 5))
                   .contains("operator is missing"));
  EXPECT_EQ(hint("x + 2)", errorOf(Kind::unexpectedToken, ")", 5)), QString());
  EXPECT_EQ(hint("x and or x", errorOf(Kind::unexpectedToken, "or", 6)), QString());
}

TEST(ExpressionHint, NumbersAndTextsAreWrittenPlainly) {
  for (const char* expression : {"1.000.000", "1 000 000", "1_000"}) {
    EXPECT_TRUE(hint(expression).contains("no thousands separators")) << expression;
  }
  EXPECT_TRUE(hint("1,000,000", errorOf(Kind::unexpectedComma)).contains("1000000"));
  EXPECT_TRUE(hint("1e400", errorOf(Kind::undefinedName, "1e400", 0)).contains("too large"));
  EXPECT_TRUE(
      hint("x // \"a", errorOf(Kind::unclosedText, "", 7)).contains("opens at position 5."));
  EXPECT_TRUE(hint(" ").contains("is empty"));
}

TEST(ExpressionHint, CallsLeadToTheFunctionThatTakesTheArguments) {
  const auto hintAtCall = [](Kind kind, const char* function) {
    return hint("x", errorOf(kind, function));
  };
  for (const auto& [function, wanted] :
       {std::pair("round", "2 argument(s): round2(x,d)"), std::pair("trim", ": trim2(x,y)"),
        std::pair("indexOf", "3 argument(s): indexOf2("), std::pair("atan", "atan2(y, x)"),
        std::pair("atan2", "from numbers alone"), std::pair("lastIndexOf", ": lastIndexOf2("),
        std::pair("log", "ln(x) / ln(b)")}) {
    EXPECT_TRUE(hintAtCall(Kind::tooManyArguments, function).contains(wanted))
        << hintAtCall(Kind::tooManyArguments, function).toStdString();
  }
  EXPECT_EQ(hintAtCall(Kind::tooManyArguments, "indexOf").count("argument(s)"), 1);
  EXPECT_TRUE(hintAtCall(Kind::tooFewArguments, "round2").contains("1 argument(s): round(x)"));
  EXPECT_TRUE(hintAtCall(Kind::tooFewArguments, "substring").contains("right(x, strlen(x) - s)"));
}

TEST(ExpressionHint, ColumnsWithBlanksNeedALabel) {
  EXPECT_TRUE(hint("net price * 2").contains("<InputVar column='net price' label='net_price'/>"));
  EXPECT_TRUE(hint("net_price * 2").contains("label='net_price'"));
  EXPECT_TRUE(hint("2nd * 2").contains("label='_2nd'"));
  EXPECT_EQ(hint("\"net price\""), QString());
}

TEST(ExpressionHint, OneLetterIsNearToNoOther) {
  const ExpressionError unknown = errorOf(Kind::undefinedName, "k", 0);
  EXPECT_TRUE(hint("k", unknown).contains("neither"));
  EXPECT_FALSE(hint("k", unknown).contains("Did you mean"));
  EXPECT_TRUE(hint("X", errorOf(Kind::undefinedName, "X", 0)).contains("Did you mean x?"));
}

}  // namespace
}  // namespace kelvarin
