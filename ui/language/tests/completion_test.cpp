#include "ui/language/completion.h"

#include <chrono>

#include <gtest/gtest.h>

#include "ui/language/call_tip.h"
#include "ui/language/highlighting.h"
#include "ui/language/tests/formula_fixture.h"

namespace kelvarin {
namespace {

CompletionList at(const Completion& completion, const char* text, bool isAsked = false) {
  QString expression = QString::fromUtf8(text);
  const qsizetype cursor = expression.indexOf(u'|');
  expression.remove(cursor, 1);
  return completion.at(expression, cursor, isAsked);
}

std::string firstOf(const CompletionList& list) {
  return list.candidates.empty() ? "" : list.candidates.front().name.toStdString();
}

// The expression after the first candidate was chosen, with the cursor.
std::string chosen(const Completion& completion, const char* text) {
  const CompletionList list = at(completion, text);
  if (list.candidates.empty()) {
    return "";
  }
  const Candidate& candidate = list.candidates.front();
  QString expression = QString::fromUtf8(text).remove(u'|');
  expression.replace(list.start, list.size, candidate.insertion);
  return expression.insert(list.start + candidate.cursor, u'|').toStdString();
}

Formula shopFormula() {
  Formula formula = formulaOf(QStringLiteral("1"));
  formula.columns.columns.push_back({QStringLiteral("priceTotal"), MetaTypeColumn::number});
  formula.columns.columns.push_back({QStringLiteral("price"), MetaTypeColumn::number});
  formula.variables.push_back(variableForColumn(formula.columns.columns.back(), formula.variables));
  formula.parameters.setValue(QStringLiteral("priceLimit"), QStringLiteral("9.5"));
  return formula;
}

TEST(Completion, RanksByMatchAndUse) {
  Completion completion(shopFormula());
  EXPECT_EQ(firstOf(at(completion, "1 + pri|")), "price");
  EXPECT_EQ(firstOf(at(completion, "1 + pt|")), "priceTotal");
  EXPECT_EQ(firstOf(at(completion, "1 + prL|")), "priceLimit");
  EXPECT_EQ(firstOf(at(completion, "1 + total|")), "priceTotal");
  EXPECT_EQ(firstOf(at(completion, "sbstr|")), "substr");
  EXPECT_EQ(firstOf(at(completion, "ifnull|")), "nvl");
  EXPECT_EQ(at(completion, "IFNULL|").candidates.front().foreignName.toStdString(), "IFNULL");
  completion.setUses({{QStringLiteral("priceLimit"), 20}});
  EXPECT_EQ(firstOf(at(completion, "1 + pri|")), "priceLimit");
}

TEST(Completion, OffersNoVariableWithoutAName) {
  Formula formula = shopFormula();
  formula.variables.emplace_back();
  const Completion completion(formula);
  for (const Candidate& candidate : at(completion, "|", true).candidates) {
    EXPECT_FALSE(candidate.name.isEmpty());
  }
  EXPECT_EQ(firstOf(at(completion, "sbstr|")), "substr");
}

TEST(Completion, InsertsWhatFits) {
  const Completion completion(shopFormula());
  EXPECT_EQ(chosen(completion, "x + strle|"), "x + strlen(|)");
  EXPECT_EQ(chosen(completion, "x + strle|(s)"), "x + strlen|(s)");
  EXPECT_EQ(chosen(completion, "rand1| + x"), "rand1()| + x");
  EXPECT_EQ(chosen(completion, "uni|ce * x"), "unit_price| * x");
  const CompletionList list = at(completion, "uni|");
  ASSERT_FALSE(list.candidates.empty());
  EXPECT_EQ(list.candidates.front().columnToBind.toStdString(), "unit price");
  EXPECT_EQ(list.candidates.front().type.toStdString(), "number");
}

TEST(Completion, OffersNothingWhereNoNameBelongs) {
  const Completion completion(shopFormula());
  for (const char* text : {"s // \"pri|", "s // \"pri|\"", "1.5|", "3pri|", "x + p|", "x # pri|"}) {
    EXPECT_TRUE(at(completion, text).candidates.empty()) << text;
  }
  EXPECT_FALSE(at(completion, "x + |", true).candidates.empty());
  EXPECT_FALSE(at(completion, "x + p|", true).candidates.empty());
  EXPECT_EQ(at(completion, "_now|").candidates.size(), 0U);
  Formula withNow = shopFormula();
  withNow.options.time.addNow = true;
  EXPECT_EQ(firstOf(at(Completion(withNow), "_no|")), "_now");
}

TEST(CallTip, FindsTheArgumentAtTheCursor) {
  struct Case {
    const char* text;
    const char* name;
    int argument;
  };
  const Case cases[] = {{"substring(|", "substring", 0},
                        {"substring(s, (1 + 2|", "substring", 1},
                        {"substring(\"a,b(\", nvl(x, {1,2}[0]), |)", "substring", 2},
                        {"substring(s, nvl(x, |0), 3)", "nvl", 1},
                        {"1 + substring(s,1,2)|", "", 0},
                        {"max(1,2,3,4,5,|", "max", 2},
                        {"nvl(1,2,3|", "nvl", 2},
                        {"(1 + |2)", "", 0},
                        {"unknown(|", "", 0}};
  for (const Case& one : cases) {
    QString expression = QString::fromUtf8(one.text);
    const qsizetype cursor = expression.indexOf(u'|');
    const std::optional<CallTip> tip = callTipAt(expression.remove(cursor, 1), cursor);
    EXPECT_EQ(tip ? tip->name.toStdString() : "", one.name) << one.text;
    EXPECT_EQ(tip ? tip->argument : 0, one.argument) << one.text;
  }
  const CallTip tip = *callTipAt(QStringLiteral("1 + nvl("), 8);
  EXPECT_EQ(tip.nameStart, 4);
  EXPECT_EQ(tip.arguments.size(), 2);
  EXPECT_EQ(tip.engines.toStdString(), "Fastest parser, Fast parser, String parser");
  EXPECT_FALSE(tip.comment.isEmpty());
  EXPECT_FALSE(tip.nulls.isEmpty());
}

std::string classesOf(const char* text, const Formula& formula) {
  static constexpr char kCodes[] = "ntfvcob,u?!";
  std::string codes;
  for (const HighlightedSpan& span :
       highlightingOf(QString::fromUtf8(text), knownNamesOf(formula))) {
    codes += kCodes[static_cast<int>(span.kind)];
  }
  return codes;
}

TEST(Highlighting, TellsTokensApart) {
  const Formula formula = shopFormula();
  EXPECT_EQ(classesOf("nvl(x, 3{k}) and s == \"a\"", formula), "fbv,nubovot");
  EXPECT_EQ(classesOf("pi + priceLimit + nope + _n", formula), "coco?ov");
  EXPECT_EQ(classesOf("(int)x + (x", formula), "ooovo!v");
  EXPECT_EQ(classesOf("sin + 3k + nvl $ \"a", formula), "?on!o?!!");
  EXPECT_EQ(classesOf("x(2) + unit_price", formula), "?bnbo?");
}

TEST(Highlighting, FindsBracketsAndWords) {
  const QString expression = QStringLiteral("f(a[1], \")\") + b)");
  const auto pairAt = [&](qsizetype cursor) {
    const BracketPair pair = bracketsAt(expression, cursor);
    return std::pair(pair.first, pair.second);
  };
  EXPECT_EQ(pairAt(1), std::pair(qsizetype{1}, qsizetype{11}));
  EXPECT_EQ(pairAt(12), std::pair(qsizetype{11}, qsizetype{1}));
  EXPECT_EQ(pairAt(4), std::pair(qsizetype{3}, qsizetype{5}));
  EXPECT_EQ(pairAt(9), std::pair(qsizetype{-1}, qsizetype{-1}));
  EXPECT_EQ(pairAt(16), std::pair(qsizetype{16}, qsizetype{-1}));
  EXPECT_EQ(wordAt(expression, 3).text.toStdString(), "a");
  EXPECT_EQ(wordAt(expression, 9).text.toStdString(), "");
}

TEST(LanguageOfEditors, IsQuickForLongExpressionsOverManyColumns) {
  Formula formula;
  for (int i = 0; i < 1000; ++i) {
    formula.columns.columns.push_back({QStringLiteral("column%1").arg(i), MetaTypeColumn::number});
    if (i % 2 == 0) {
      formula.variables.push_back(variableForColumn(formula.columns.columns.back(), {}));
    }
  }
  QString expression;
  for (int i = 0; expression.size() < 10'000; ++i) {
    expression += QStringLiteral("nvl(column%1, 2.5) + ").arg(i % 1000);
  }
  expression += QStringLiteral("colu");
  using Clock = std::chrono::steady_clock;
  const auto millisecondsSince = [](Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
  };
  Clock::time_point start = Clock::now();
  const Completion completion(formula);
  const KnownNames names = knownNamesOf(formula);
  const double preparing = millisecondsSince(start);
  constexpr int kTimes = 20;
  std::size_t found = 0;
  start = Clock::now();
  for (int i = 0; i < kTimes; ++i) {
    found += highlightingOf(expression, names).size();
  }
  const double highlighting = millisecondsSince(start) / kTimes;
  start = Clock::now();
  for (int i = 0; i < kTimes; ++i) {
    found += completion.at(expression, expression.size(), false).candidates.size();
  }
  const double completing = millisecondsSince(start) / kTimes;
  std::printf("prepared in %.2f ms, highlighted in %.2f ms, completed in %.2f ms\n", preparing,
              highlighting, completing);
  EXPECT_GT(found, 0U);
  EXPECT_LT(highlighting + completing, 20.0);  // four times the aim
}

}  // namespace
}  // namespace kelvarin
