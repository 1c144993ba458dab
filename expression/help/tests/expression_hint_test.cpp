#include "expression/help/expression_hint.h"

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

const HintNames kNames{{"total", "x", "in"}, {"total", "x", "in", "net price", "2nd"}};

QString hint(const char* expression, const char* message = "Unexpected something.") {
  return expressionHint({QString::fromUtf8(message), -1, {}}, QString::fromUtf8(expression), kNames);
}

TEST(ExpressionHint, AnswersSignsOfOtherLanguages) {
  const std::pair<const char*, const char*> cases[] = {
      {"x == 'a'", "double quotes"},      {"x == “a”", "double quotes"},
      {"!x", "not(x)"},                   {"x > 1 && !(x > 2)", "not(x)"},
      {"`x` + 1", "stands alone"},        {"$x + 1", "stands alone"},
      {"[x] + 1", "stands alone"},        {"1 + [x]", "stands alone"},
      {"x in (1, 2)", "x == a || x == b"}, {"x not in (1, 2)", "x == a || x == b"},
      {"x like \"a%\"", "contains"},      {"x between 1 and 2", "x >= a && x <= b"},
      {"x is null", "isNull(x)"},         {"x is not null", "not(isNull(x))"},
      {"x ** 2", "x ^ y"},                {"x <> 1", "!="},
      {"x => 1", ">="},                   {"x =< 1", "<="},
      {"x === 1", "=="},                  {"x × 2", "x * y"},
      {"x ≠ 2", "!="},                    {"max(1; 2)", "commas"},
      {"not x", "not(x)"},                {"x > 1 then 2 else 3", "condition ? a : b"},
      {"10%", "x / 100"},                 {"x mod 2", "x % y"},
      {"t.x + 1", "no points"},           {"x > 1 AND x < 2", "small letters"},
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
  const char* addition =
      "Can't evaluate function/operator \"+\": Argument 1 of function/operator \"+\" is of type 's' "
      "whereas type 'f' was expected.";
  EXPECT_TRUE(expressionHint({addition, 2, "+"}, "s + x", kNames).contains("a // b"));
  EXPECT_TRUE(expressionHint({addition, 2, "-"}, "s - x", kNames).startsWith("One value is a text"));
  EXPECT_TRUE(hint("x and in", "Value \"x\" is of type 'i'. There is no implicit conversion to type 'b'.")
                  .contains("isTrue(x)"));
  EXPECT_TRUE(hint("\"a\" // 1", "Value \"1\" is of type 'i'. There is no implicit conversion to type 's'.")
                  .contains("itoa"));
  EXPECT_TRUE(hint("substr(x)", "Too few parameters passed to function \"substr\".")
                  .contains("How 'substr' is called: "));
  EXPECT_TRUE(hint("3,5 + 1", "Unexpected comma found at position 1.").contains("3.5"));
  EXPECT_TRUE(hint("if(x, 1, 2)", "Undefined token \"if\" found at position 0.").contains("(condition ? then : else)"));
}

TEST(ExpressionHint, ValuesSideBySideMissAnOperator) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"x 2", "Unexpected value \"2\" found at position 2.", "x * 2"},
      {"2x", "Undefined token \"x\" found at position 1.", "2 * x"},
      {"x(2)", "Undefined token \"x\" found at position 0.", "x * (...)"},
      {"(x)(2)", "Unexpected parenthesis \"(\" found at position 3.", "(...) * (...)"},
      {"x round(2)", "Unexpected function \"round\" found at position 2.", "x * round(...)"},
      {"x \"a b\"", "Unexpected value \"\"a b\"\" found at position 2.", "x // \"a b\""},
  };
  for (const auto& [expression, message, wanted] : cases) {
    const QString text = hint(expression, message);
    EXPECT_TRUE(text.startsWith("An operator is missing") && text.contains(wanted))
        << expression << ": " << text.toStdString();
  }
  EXPECT_FALSE(hint("rund(2)", "Unexpected parenthesis \"(\" found at position 4.")
                   .contains("operator is missing"));
  EXPECT_EQ(hint("x + 2)", "Unexpected parenthesis \")\" found at position 5."), QString());
}

TEST(ExpressionHint, NumbersAndTextsAreWrittenPlainly) {
  for (const char* expression : {"1.000.000", "1 000 000", "1_000"}) {
    EXPECT_TRUE(hint(expression).contains("no thousands separators")) << expression;
  }
  EXPECT_TRUE(hint("1,000,000", "Unexpected comma found at position 1.").contains("1000000"));
  EXPECT_TRUE(hint("1e400", "Undefined token \"1e400\" found at position 0.").contains("too large"));
  EXPECT_TRUE(hint("x // \"a", "Unterminated string starting at position 7.")
                  .contains("opens at position 5."));
  EXPECT_TRUE(hint(" ", "Expression is empty!").contains("is empty"));
}

TEST(ExpressionHint, CallsLeadToTheFunctionThatTakesTheArguments) {
  const auto hintAtCall = [](const char* much, const char* function) {
    return hint("x", qPrintable(QStringLiteral("Too %1 parameters passed to function \"%2\".")
                                    .arg(QLatin1String(much), QLatin1String(function))));
  };
  for (const auto& [function, wanted] :
       {std::pair("round", "2 argument(s): round2(x,d)"), std::pair("trim", ": trim2(x,y)"),
        std::pair("indexOf", "3 argument(s): indexOf2("), std::pair("atan", "atan2(y, x)"),
        std::pair("atan2", "from numbers alone"),
        std::pair("lastIndexOf", ": lastIndexOf2("), std::pair("log", "ln(x) / ln(b)")}) {
    EXPECT_TRUE(hintAtCall("many", function).contains(wanted))
        << hintAtCall("many", function).toStdString();
  }
  EXPECT_EQ(hintAtCall("many", "indexOf").count("argument(s)"), 1);
  EXPECT_TRUE(hintAtCall("few", "round2").contains("1 argument(s): round(x)"));
  EXPECT_TRUE(hintAtCall("few", "substring").contains("right(x, strlen(x) - s)"));
}

TEST(ExpressionHint, ColumnsWithBlanksNeedALabel) {
  EXPECT_TRUE(hint("net price * 2").contains("<InputVar column='net price' label='net_price'/>"));
  EXPECT_TRUE(hint("net_price * 2").contains("label='net_price'"));
  EXPECT_TRUE(hint("2nd * 2").contains("label='_2nd'"));
  EXPECT_EQ(hint("\"net price\""), QString());
}

TEST(ExpressionHint, OneLetterIsNearToNoOther) {
  const char* unknown = "Undefined token \"k\" found at position 0.";
  EXPECT_TRUE(hint("k", unknown).contains("neither"));
  EXPECT_FALSE(hint("k", unknown).contains("Did you mean"));
  EXPECT_TRUE(hint("X", "Undefined token \"X\" found at position 0.").contains("Did you mean x?"));
}

}  // namespace
}  // namespace kelvarin
