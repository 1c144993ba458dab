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

TEST(ExpressionWarnings, WhatMeansWhatItSaysIsLeftAlone) {
  for (const char* expression :
       {"", "a == b", "a!=b", "a<=b", "a>=b", "a==-1", "a+=1", "t == \"x = 5\"", "t // \"\\\"=\"",
        "a # = b", "nvl(a,_null)", "a ? _null : b==1", "t == _nullS", "a==_nullable", "\"="}) {
    EXPECT_EQ(warningsAbout("f", expression), QStringList()) << expression;
  }
}

}  // namespace
}  // namespace kelvarin
