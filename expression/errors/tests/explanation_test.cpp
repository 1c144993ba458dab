#include <gtest/gtest.h>

#include "expression/errors/eval_command.h"
#include "expression/errors/expression_mark.h"

namespace kelvarin {
namespace {

QString marked(const char* expression, int position, const char* token) {
  return markedExpression(QString::fromUtf8(expression), {{}, position, QString::fromUtf8(token)});
}

TEST(MarkedExpression, PutsTheMarkBelowTheToken) {
  EXPECT_EQ(marked("a + nope * 2", 4, "nope"), "a + nope * 2\n    ^^^^");
  EXPECT_EQ(marked("a + nope * 2", 8, "nope"), "a + nope * 2\n    ^^^^");  // reported behind it
  EXPECT_EQ(marked("a +", 3, ""), "a +\n   ^");
  EXPECT_EQ(marked("a + b", -1, ""), "a + b");
  EXPECT_EQ(marked("a\n+\tnope", 4, "nope"), "a + nope\n    ^^^^");
}

TEST(MarkedExpression, CountsColumnsOfTheTerminal) {
  EXPECT_EQ(marked("\"日本\" + x", 7, "x"), QString::fromUtf8("\"日本\" + x\n         ^"));
  EXPECT_EQ(marked("\"𝛼\" + x", 7, "x"), QString::fromUtf8("\"𝛼\" + x\n      ^"));
  EXPECT_EQ(marked("\"e\u0301\" + x", 7, "x"), QString::fromUtf8("\"e\u0301\" + x\n      ^"));
}

TEST(MarkedExpression, ShowsAPartOfALongExpression) {
  const QString expression = QString("a + ").repeated(100) + "nope" + QString(" + b").repeated(100);
  const QStringList lines = markedExpression(expression, {{}, 400, "nope"}).split(u'\n');
  ASSERT_EQ(lines.size(), 2);
  EXPECT_LE(lines[0].size(), 82);
  EXPECT_TRUE(lines[0].startsWith("...") && lines[0].endsWith("..."));
  EXPECT_EQ(lines[0].mid(lines[1].indexOf(u'^'), lines[1].count(u'^')), "nope");
}

TEST(WithPosition, FindsTheTokenOutsideOfTexts) {
  const auto position = [](const char* expression, const char* token) {
    return withPosition({{}, -1, QString::fromUtf8(token)}, QString::fromUtf8(expression)).position;
  };
  EXPECT_EQ(position("\"sin\" // sin(\"a\")", "sin"), 9);
  EXPECT_EQ(position("a + ab", "a"), 0);  // and no part of a name
  EXPECT_EQ(position("a + b", "c"), -1);
  EXPECT_EQ(position("a + b", ""), -1);
}

TEST(EvalCommand, CanBePasted) {
  const TriedExpression tried{
      "s // 'x' //\n t",
      {{"s", "it's", true}, {"a", "2.5", false}, {"t", {}, true}, {"n", {}, false}},
      {"dateFormat=yyyy MM"},
      "U"};
  EXPECT_EQ(evalCommand(tried),
            "kelvarin eval 's // '\\''x'\\'' //  t' --text 's=it'\\''s' --var a=2.5 --text t "
            "--null t --null n --meta U --opt 'dateFormat=yyyy MM'");
  EXPECT_EQ(evalCommand({"-a", {{"a", "1", false}}, {}, {}}), "kelvarin eval --var a=1 -- -a");
  EXPECT_EQ(evalCommand({"s", {{"s", "a\x1b\n'", true}}, {}, {}}),
            "kelvarin eval 's' --text $'s=a\\x1b\\n\\''");
  EXPECT_EQ(evalCommand({QString(5000, u'1'), {}, {}, {}}), QString());
}

TEST(ValuesText, CutsAndEscapes) {
  EXPECT_EQ(valuesText({{"a", "1", false}, {"s", QString(50, u'x'), true}, {"t", {}, true}}),
            "a = 1, s = \"" + QString(40, u'x') + "\"..., t = null");
  EXPECT_EQ(valuesText({{"s", "a\tb", true}}), "s = \"a\\x09b\"");
}

}  // namespace
}  // namespace kelvarin
