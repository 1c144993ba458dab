#include "expression/evaluator/expression_warnings.h"

#include <gtest/gtest.h>

namespace kelvarin {
namespace {

TEST(ExpressionWarnings, AnAssignmentAsksForTheComparison) {
  const QStringList expected{"Expression 'late': '=' assigns; did you mean '=='?"};
  for (const char* expression : {"qty = 5", "qty=5", "a>1 && b=-2", "(a=1)+(b=2)", "x= ==y"}) {
    EXPECT_EQ(warningsAbout("late", expression), expected) << expression;
  }
}

TEST(ExpressionWarnings, AnAssignmentInAConditionSaysWhatIsTrue) {
  const QStringList warnings = warningsAbout("f", "name = \"Ann\"", ExpressionPurpose::condition);
  ASSERT_EQ(warnings.size(), 1);
  const QString plain = warningsAbout("f", "name = \"Ann\"")[0];
  EXPECT_TRUE(warnings[0].startsWith(plain + " The assigned value"));
}

TEST(ExpressionWarnings, AComparisonWithNullAsksForTheTest) {
  EXPECT_EQ(warningsAbout("f", "x == _null ? 1 : 2"),
            QStringList{"Expression 'f': '== _null' is never true; did you mean 'isNull(x)'?"});
  EXPECT_EQ(
      warningsAbout("f", "_null!=größe"),
      QStringList{"Expression 'f': '!= _null' is always true; did you mean 'not(isNull(größe))'?"});
  EXPECT_EQ(warningsAbout("f", "(a+b)==_null"),
            QStringList{"Expression 'f': '== _null' is never true; did you mean 'isNull(x)'?"});
  EXPECT_EQ(warningsAbout("f", "x = y == _null").size(), 2);
}

TEST(ExpressionWarnings, ComparisonsDoNotChain) {
  EXPECT_EQ(warningsAbout("f", "3 < price < 5"),
            QStringList{"Expression 'f': comparisons do not chain: '3 < price < 5' compares 1 or "
                        "0, the result of '3 < price'. Did you mean '3 < price && price < 5'?"});
  const std::pair<const char*, const char*> cases[] = {
      {"nvl(0<=x<=-1, 2) # < 3", "'0 <= x && x <= -1'"},
      {"y > 1 and a == b == c", "'a == b && b == c'"},
      {"(x+1) > y > z > \"<\"", "'(x+1) > y && y > z && z > \"<\"'"},
  };
  for (const auto& [expression, meant] : cases) {
    const QStringList warnings = warningsAbout("f", expression);
    ASSERT_EQ(warnings.size(), 1) << expression;
    EXPECT_TRUE(warnings[0].contains(meant)) << warnings[0].toStdString();
  }
  for (const char* expression :
       {"(a < b) < c", "(a<b) == (c<d)", "a < b && b < c", "a<b or c<d", "a<b and c<d", "a<b|c<d",
        "a < b ? c < d : e < f", "max(a<b, c<d)", "a < \"b < c\"", "a<b # < c", "a << 1 < b >> 2",
        "x = a < b", "orders < 3", "a[b<c] < d", "a <> b", "a<>b<>c", "< a < b", "a < b <"}) {
    EXPECT_FALSE(warningsAbout("f", expression).join(u' ').contains("chain")) << expression;
  }
}

TEST(ExpressionWarnings, WhatMeansWhatItSaysIsLeftAlone) {
  for (const char* expression :
       {"", "a == b", "a!=b", "a<=b", "a>=b", "a==-1", "a+=1", "t == \"x = 5\"", "t // \"\\\"=\"",
        "a # = b", "nvl(a,_null)", "a ? _null : b==1", "t == _nullS", "a==_nullable", "\"="}) {
    EXPECT_EQ(warningsAbout("f", expression), QStringList()) << expression;
  }
}

}  // namespace
}  // namespace kelvarin
