#include "actions/filter_rows/filter_rows.h"

#include <gtest/gtest.h>

#include "actions/frame/tests/allocation_counter.h"
#include "actions/frame/tests/expression_elements.h"
#include "actions/frame/tests/fake_observer.h"
#include "host/testing/row_harness.h"

namespace kelvarin::testing {
namespace {

// A text where its first operand is a number fails in the row where a is 2.
const std::string kFailsAtTwo = "(a == 2 ? t : a) + 1 &gt; 0";

std::string filter(const std::string& expression, const std::string& attributes = "",
                   const std::string& inputs = kNumberInput) {
  return "<FilterRows name='f' " + attributes + "><Expression>" + expression +
         "</Expression><InputVars>" + inputs + "</InputVars></FilterRows>";
}

RowHarness harness(const std::string& xml, const std::string& columns = "a:F") {
  return RowHarness::of<FilterRows>(xml, columns);
}

}  // namespace

TEST(FilterRows, SendsEachRowUnchangedToOneOfTwoPins) {
  auto h = harness(filter("a &gt; 1"), "a:F t:U k:K");
  const SortInfos order(0, SortType::numberAscending);
  h.input(0).setSortOrder({order});
  h.push(Rows{{1, "x", 5}, {2, "y", nullptr}, {nullptr, nullptr, 6}, {3, "", 7}});
  EXPECT_EQ(h.rows(0), (Rows{{2, "y", nullptr}, {3, "", 7}}));
  EXPECT_EQ(h.rows(1), (Rows{{1, "x", 5}, {nullptr, nullptr, 6}}));
  for (const int pin : {0, 1}) {
    EXPECT_EQ(h.columns(pin), "a:F t:U k:K");
    EXPECT_EQ(h.sortOrder(pin), QVector<SortInfos>{order});
  }
  EXPECT_EQ(h.log(), Strings{});
}

TEST(FilterRows, AnEmptyExpressionKeepsEveryRow) {
  auto h = harness(filter(" "));
  h.push(Rows{{0}});
  EXPECT_EQ(h.rows(0), (Rows{{0}}));
}

TEST(FilterRows, TruncatesAfterTheFirstRowThatFails) {
  auto h = harness(filter("a &lt; 3", "truncate='1'"));
  h.push(Rows{{1}, {2}, {3}, {1}});
  EXPECT_EQ(h.rows(0), (Rows{{1}, {2}}));
  EXPECT_EQ(h.rows(1), (Rows{{3}}));
  EXPECT_EQ(h.input(0).rowsPulled(), 3);
  EXPECT_TRUE(h.actionAs<FilterRows>().wasTruncated());

  auto none = harness(filter("_n &lt; 0", "truncate='1'"));
  none.push(Rows{{1}, {2}});
  EXPECT_EQ(none.rows(0), Rows{});
  EXPECT_EQ(none.rows(1), (Rows{{1}}));
}

TEST(FilterRows, SamplingKeepsTheFirstRowsWithoutLookingAtTheVariables) {
  const std::string missing = "<InputVar column='nowhere'/>";
  auto h = harness(filter("_n &lt; 500", "", missing));
  h.pushRepeated({1}, 800);
  ASSERT_TRUE(h.pull(0).has_value());
  EXPECT_FLOAT_EQ(h.action().computeCompletion(), 1.0f / 500);
  EXPECT_EQ(h.rows(0).size(), 499u);
  EXPECT_EQ(h.rows(1), Rows{});
  EXPECT_EQ(h.input(0).rowsPulled(), 501);
  EXPECT_EQ(h.log(), Strings{});

  auto one = harness(filter("_n&lt;1"));
  one.pushRepeated({1}, 3);
  EXPECT_EQ(one.rows(0).size(), 1u);
  EXPECT_EQ(one.input(0).rowsPulled(), 1);

  auto fewer = harness(filter("_n &lt; 10"));
  fewer.pushRepeated({1}, 3);
  EXPECT_EQ(fewer.rows(0).size(), 3u);
  EXPECT_FLOAT_EQ(fewer.action().computeCompletion(), 0.3f);
}

TEST(FilterRows, RunsAndChecksWarnOnceAboutASuspectCondition) {
  const struct {
    std::string expression;
    std::string warning;
  } cases[] = {
      {"a = 5",
       "warning: Expression 'FilterRows': '=' assigns; did you mean '=='? The assigned value is "
       "the condition: true unless it is 0, missing or an empty text."},
      {"isNull(a) ? \"x\" : \"y\"", "the condition is a text"},
  };
  for (const auto& c : cases) {
    auto run = harness(filter(c.expression));
    run.push(Rows{{1}, {2}});
    EXPECT_EQ(run.rows(0).size(), 2u);
    auto check = harness(filter(c.expression));
    check.checkOnly();
    check.finish();
    for (RowHarness* h : {&run, &check}) {
      ASSERT_EQ(h->log().size(), 1u);
      EXPECT_TRUE(contains(h->log()[0], c.warning)) << h->log()[0];
    }
  }
}

TEST(FilterRows, AMissingColumnOrAFailedRowStopsTheRun) {
  const struct {
    std::string xml;
    Rows kept;
    Strings parts;  // of the log line
  } cases[] = {
      {filter("1", "", "<InputVar column='b'/>"), {}, {"error: Error: Column 'b' not found"}},
      {filter(kFailsAtTwo, "", kTextInput),
       {{1, "x"}},
       {"error: MathParser Error in FilterRows:\n", "\n On Data Row 1 at position ",
        ": Please click the \"? (F7)\" check button inside the property window of the 'FilterRows' "
        "action to test & fix the expression."}},
  };
  for (const auto& c : cases) {
    auto h = harness(c.xml, "a:F t:U");
    h.push(Rows{{1, "x"}, {2, "y"}, {3, "z"}});
    EXPECT_EQ(h.rows(0), c.kept);
    EXPECT_EQ(h.rows(1), Rows{});
    ASSERT_EQ(h.log().size(), 1u);
    for (const std::string& part : c.parts) {
      EXPECT_TRUE(contains(h.log()[0], part)) << h.log()[0];
    }
    EXPECT_TRUE(h.hasFailed());
  }
}

TEST(FilterRows, WithoutAbortAFailedRowIsFalseButNotTheFirstOne) {
  auto later = harness(filter(kFailsAtTwo, "abortWhenError='0'", kTextInput), "a:F t:U");
  later.push(Rows{{1, "x"}, {2, "y"}, {2, "w"}, {3, "z"}});
  EXPECT_EQ(later.rows(0), (Rows{{1, "x"}, {3, "z"}}));
  EXPECT_EQ(later.rows(1), (Rows{{2, "y"}, {2, "w"}}));
  ASSERT_EQ(later.log().size(), 1u);
  EXPECT_TRUE(startsWith(later.log()[0], "warning: "));
  EXPECT_TRUE(contains(later.log()[0], "failed on 2 row(s), which went to output pin 1"));
  EXPECT_FALSE(later.hasFailed());

  auto first = harness(filter(kFailsAtTwo, "abortWhenError='0'", kTextInput), "a:F t:U");
  first.push(Rows{{2, "x"}, {1, "y"}});
  EXPECT_EQ(first.rows(1), Rows{});
  ASSERT_EQ(first.log().size(), 1u);
  EXPECT_TRUE(contains(first.log()[0], "\n On Data Row 0 at position "));
  EXPECT_TRUE(first.hasFailed());
}

TEST(FilterRows, DatesArePrepared) {
  auto reference = harness(filter("_now", "addNow='1' referenceTime='soon'", ""));
  reference.push(Rows{{1}});
  EXPECT_EQ(reference.rows(0), (Rows{{1}}));
  EXPECT_EQ(reference.log(), Strings{"warning: Cannot parse Reference time. We will use "
                                     "1970-01-01T00:00:00.000 as reference time."});
  for (const bool isCheck : {false, true}) {
    auto format = harness(filter("1", "addNowS='1'"));
    if (isCheck) {
      format.checkOnly();
    }
    format.push(Rows{{1}});
    EXPECT_EQ(format.rows(0), Rows{});
    EXPECT_EQ(format.log(), Strings{isCheck ? "error: Math parser error:\n  Date format is unknown"
                                            : "error: filterRow error: Date format is unknown"});
  }
}

TEST(FilterRows, ACheckPassesOneRowToBothPinsAndCompiles) {
  auto good = harness(filter("a &lt; 0"));
  good.checkOnly();
  good.push(Rows{{1}, {2}});
  EXPECT_EQ(good.rows(0), (Rows{{1}}));
  EXPECT_EQ(good.rows(1), (Rows{{1}}));

  auto wrong = harness(filter("a &lt; nope"));
  wrong.checkOnly();
  wrong.finish();
  ASSERT_EQ(wrong.log().size(), 1u);
  EXPECT_TRUE(startsWith(wrong.log()[0], "error: MathParser Error in FilterRows:\n"));
  EXPECT_TRUE(contains(wrong.log()[0], "\n  Error Token:nope\n  Error at position:4"));
  EXPECT_EQ(wrong.columns(1), "a:F");
  EXPECT_TRUE(wrong.hasFailed());
}

TEST(FilterRows, AnEmptyTableKeepsItsHeaderOnBothPins) {
  auto h = harness(filter("a"), "a:F t:U");
  h.finish();
  EXPECT_EQ(h.columns(0), "a:F t:U");
  EXPECT_EQ(h.columns(1), "a:F t:U");
  EXPECT_FALSE(h.hasFailed());
}

TEST(FilterRows, AnObserverSeesEveryRowAndCanStop) {
  auto h = harness(filter("a &gt; 1", "", kTextInput), "a:F t:U");
  h.push(Rows{{1, "x"}, {2, nullptr}, {3, "z"}});
  FakeObserver observer(2);
  h.actionAs<FilterRows>().setObserver(&observer);
  EXPECT_EQ(h.rows(0), (Rows{{2, nullptr}}));
  EXPECT_EQ(h.rows(1), (Rows{{1, "x"}}));
  EXPECT_EQ(observer.labels, QStringList{"String Parser"});
  ASSERT_EQ(observer.rows.size(), 2u);
  EXPECT_EQ(observer.variables(0), "a=1 t='x' _n=0");
  EXPECT_EQ(observer.variables(1), "a=2 t=null _n=1");
  EXPECT_EQ(observer.results(0), "FilterRows=false");
  EXPECT_EQ(observer.results(1), "FilterRows=true");
  EXPECT_EQ(observer.rows[1].number, 1);
  EXPECT_FALSE(h.hasFailed());
}

TEST(FilterRows, AnObserverSeesRowsThatFail) {
  for (const bool isAborting : {false, true}) {
    auto h =
        harness(filter(kFailsAtTwo, isAborting ? "" : "abortWhenError='0'", kTextInput), "a:F t:U");
    h.push(Rows{{1, "x"}, {2, "y"}, {3, "z"}});
    FakeObserver observer;
    h.actionAs<FilterRows>().setObserver(&observer);
    EXPECT_EQ(h.rows(0).size(), isAborting ? 1u : 2u);
    ASSERT_EQ(observer.rows.size(), isAborting ? 2u : 3u);
    const ObservedRow& failed = observer.rows[1];
    EXPECT_EQ(observer.variables(1), "a=2 t='y' _n=1");
    EXPECT_EQ(observer.results(1), isAborting ? "" : "FilterRows=false");
    EXPECT_EQ(failed.isLast, isAborting);
    ASSERT_EQ(failed.failures.size(), 1u);
    EXPECT_TRUE(
        startsWith(failed.failures[0].text.toStdString(), "MathParser Error in FilterRows:\n"));
    EXPECT_TRUE(observer.rows[0].failures.empty());
  }
}

TEST(FilterRows, TruncationAndSamplingHoldUnderAnObserver) {
  auto truncated = harness(filter("a &gt; 1", "truncate='1'"));
  truncated.push(Rows{{2}, {1}, {2}});
  FakeObserver first;
  truncated.actionAs<FilterRows>().setObserver(&first);
  EXPECT_EQ(truncated.rows(0), (Rows{{2}}));
  EXPECT_EQ(first.rows.size(), 2u);
  EXPECT_TRUE(truncated.actionAs<FilterRows>().wasTruncated());

  auto sampled = harness(filter("_n &lt; 2", "", kNumberInput + "<InputVar column='missing'/>"));
  sampled.pushRepeated({7}, 5);
  FakeObserver second;
  sampled.actionAs<FilterRows>().setObserver(&second);
  EXPECT_EQ(sampled.rows(0).size(), 2u);
  ASSERT_EQ(second.rows.size(), 2u);
  EXPECT_EQ(second.variables(1), "a=7 _n=1");
  EXPECT_EQ(second.results(1), "FilterRows=true");
  EXPECT_EQ(second.rows[1].number, 1);
  EXPECT_FALSE(second.rows[1].isEvaluated);
  EXPECT_EQ(sampled.log(), Strings{});
}

TEST(FilterRows, RowsAllocateNothing) {
  for (const std::string truncate : {"", "truncate='1'"}) {
    auto h = harness(filter("a+_n &gt; 0", truncate), "a:F t:U");
    h.pushRepeated({1.5, "a text that no short-string buffer would hold"}, 100'200);
    h.runWithoutReading(100);
    const long long before = allocationsSoFar();
    h.runWithoutReading(100'000);
    EXPECT_EQ(allocationsSoFar() - before, 0) << truncate;
  }
}

}  // namespace kelvarin::testing
