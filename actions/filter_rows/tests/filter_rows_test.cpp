#include "actions/filter_rows/filter_rows.h"

#include <gtest/gtest.h>

#include "actions/frame/tests/allocation_counter.h"
#include "actions/frame/tests/fake_observer.h"
#include "host/testing/row_harness.h"

using kelvarin::FilterRows;
using kelvarin::testing::allocationsSoFar;
using kelvarin::testing::FakeObserver;
using kelvarin::testing::RowHarness;
using kelvarin::testing::Rows;
using kelvarin::testing::Strings;
using kelvarin::testing::Values;

namespace {

const std::string kNumberInput = "<InputVar column='a'/>";
const std::string kTextInput = kNumberInput + "<InputVar column='t' isNumber='0'/>";
// A text where its first operand is a number fails in the row where a is 2.
const std::string kFailsAtTwo = "(a == 2 ? t : a) + 1 &gt; 0";

std::string filter(const std::string& expression, const std::string& attributes = "",
                   const std::string& inputs = kNumberInput) {
  return "<FilterRows name='f' " + attributes + "><Expression>" + expression +
         "</Expression><InputVars>" + inputs + "</InputVars></FilterRows>";
}

bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

}  // namespace

TEST(FilterRows, SendsEachRowUnchangedToOneOfTwoPins) {
  auto h = RowHarness::of<FilterRows>(filter("a &gt; 1"), "a:F t:U k:K");
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

TEST(FilterRows, WhatIsTrue) {
  auto numbers = RowHarness::of<FilterRows>(filter("a"), "a:F");
  const double nan = kelvarin::kNotANumber;
  const double infinity = kelvarin::kInfinity;
  numbers.push(Rows{{0}, {-0.5}, {nullptr}, {nan}, {infinity}});
  EXPECT_EQ(numbers.rows(0), (Rows{{-0.5}, {nan}, {infinity}}));

  auto texts = RowHarness::of<FilterRows>(filter("t", "", kTextInput), "a:F t:U");
  texts.push(Rows{{1, "0"}, {2, ""}, {3, nullptr}});
  EXPECT_EQ(texts.rows(0), (Rows{{1, "0"}}));
  EXPECT_EQ(texts.rows(1), (Rows{{2, ""}, {3, nullptr}}));

  auto empty = RowHarness::of<FilterRows>(filter(" "), "a:F");
  empty.push(Rows{{0}});
  EXPECT_EQ(empty.rows(0), (Rows{{0}}));
}

TEST(FilterRows, TruncatesAfterTheFirstRowThatFails) {
  auto h = RowHarness::of<FilterRows>(filter("a &lt; 3", "truncate='1'"), "a:F");
  h.push(Rows{{1}, {2}, {3}, {1}});
  EXPECT_EQ(h.rows(0), (Rows{{1}, {2}}));
  EXPECT_EQ(h.rows(1), (Rows{{3}}));
  EXPECT_EQ(h.input(0).rowsPulled(), 3);
  EXPECT_TRUE(h.actionAs<FilterRows>().wasTruncated());

  auto none = RowHarness::of<FilterRows>(filter("_n &lt; 0", "truncate='1'"), "a:F");
  none.push(Rows{{1}, {2}});
  EXPECT_EQ(none.rows(0), Rows{});
  EXPECT_EQ(none.rows(1), (Rows{{1}}));
}

TEST(FilterRows, SamplingKeepsTheFirstRowsWithoutLookingAtTheVariables) {
  const std::string missing = "<InputVar column='nowhere'/>";
  auto h = RowHarness::of<FilterRows>(filter("_n &lt; 500", "", missing), "a:F");
  h.pushRepeated({1}, 800);
  ASSERT_TRUE(h.pull(0).has_value());
  EXPECT_FLOAT_EQ(h.action().computeCompletion(), 1.0f / 500);
  EXPECT_EQ(h.rows(0).size(), 499u);
  EXPECT_EQ(h.rows(1), Rows{});
  EXPECT_EQ(h.input(0).rowsPulled(), 501);
  EXPECT_EQ(h.log(), Strings{});

  auto one = RowHarness::of<FilterRows>(filter("_n&lt;1"), "a:F");
  one.pushRepeated({1}, 3);
  EXPECT_EQ(one.rows(0).size(), 1u);
  EXPECT_EQ(one.input(0).rowsPulled(), 1);

  auto fewer = RowHarness::of<FilterRows>(filter("_n &lt; 10"), "a:F");
  fewer.pushRepeated({1}, 3);
  EXPECT_EQ(fewer.rows(0).size(), 3u);
  EXPECT_FLOAT_EQ(fewer.action().computeCompletion(), 0.3f);
}

TEST(FilterRows, AnAssignmentRunsAndWarnsOnce) {
  const Strings warnings{
      "warning: Expression 'FilterRows': '=' assigns; did you mean '=='? The assigned value is the "
      "condition: true unless it is 0, missing or an empty text."};
  auto h = RowHarness::of<FilterRows>(filter("a = 5"), "a:F");
  h.push(Rows{{1}, {2}});
  EXPECT_EQ(h.rows(0).size(), 2u);
  EXPECT_EQ(h.log(), warnings);

  auto checked = RowHarness::of<FilterRows>(filter("a = 5"), "a:F");
  checked.checkOnly();
  checked.finish();
  EXPECT_EQ(checked.log(), warnings);
}

TEST(FilterRows, ATextAsConditionWarnsOnce) {
  const auto isWarned = [](const Strings& log) {
    return log.size() == 1 && log[0].find("the condition is a text") != std::string::npos;
  };
  const char* text = "isNull(a) ? \"x\" : \"y\"";
  auto h = RowHarness::of<FilterRows>(filter(text), "a:F");
  h.push(Rows{{1}, {2}});
  h.finish();
  EXPECT_TRUE(isWarned(h.log()));

  auto checked = RowHarness::of<FilterRows>(filter(text), "a:F");
  checked.checkOnly();
  checked.finish();
  EXPECT_TRUE(isWarned(checked.log()));
}

TEST(FilterRows, AMissingColumnStopsTheRun) {
  auto h = RowHarness::of<FilterRows>(filter("1", "", "<InputVar column='b'/>"), "a:F");
  h.push(Rows{{1}});
  EXPECT_EQ(h.rows(0), Rows{});
  EXPECT_EQ(h.log(), Strings{"error: Error: Column 'b' not found"});
  EXPECT_TRUE(h.hasFailed());
}

TEST(FilterRows, AFailedRowStopsTheRun) {
  auto h = RowHarness::of<FilterRows>(filter(kFailsAtTwo, "", kTextInput), "a:F t:U");
  h.push(Rows{{1, "x"}, {2, "y"}, {3, "z"}});
  EXPECT_EQ(h.rows(0), (Rows{{1, "x"}}));
  EXPECT_EQ(h.rows(1), Rows{});
  ASSERT_EQ(h.log().size(), 1u);
  EXPECT_TRUE(startsWith(h.log()[0], "error: MathParser Error in FilterRows:\n"));
  EXPECT_NE(h.log()[0].find("\n On Data Row 1 at position "), std::string::npos);
  EXPECT_NE(h.log()[0].find(": Please click the \"? (F7)\" check button inside the property window "
                            "of the 'FilterRows' action to test & fix the expression."),
            std::string::npos);
  EXPECT_TRUE(h.hasFailed());
}

TEST(FilterRows, WithoutAbortAFailedRowIsFalseButNotTheFirstOne) {
  auto later =
      RowHarness::of<FilterRows>(filter(kFailsAtTwo, "abortWhenError='0'", kTextInput), "a:F t:U");
  later.push(Rows{{1, "x"}, {2, "y"}, {2, "w"}, {3, "z"}});
  EXPECT_EQ(later.rows(0), (Rows{{1, "x"}, {3, "z"}}));
  EXPECT_EQ(later.rows(1), (Rows{{2, "y"}, {2, "w"}}));
  ASSERT_EQ(later.log().size(), 1u);
  EXPECT_TRUE(startsWith(later.log()[0], "warning: "));
  EXPECT_NE(later.log()[0].find("failed on 2 row(s), which went to output pin 1"),
            std::string::npos);
  EXPECT_FALSE(later.hasFailed());

  auto first =
      RowHarness::of<FilterRows>(filter(kFailsAtTwo, "abortWhenError='0'", kTextInput), "a:F t:U");
  first.push(Rows{{2, "x"}, {1, "y"}});
  EXPECT_EQ(first.rows(1), Rows{});
  ASSERT_EQ(first.log().size(), 1u);
  EXPECT_NE(first.log()[0].find("\n On Data Row 0 at position "), std::string::npos);
  EXPECT_TRUE(first.hasFailed());
}

TEST(FilterRows, DatesArePrepared) {
  auto reference =
      RowHarness::of<FilterRows>(filter("_now", "addNow='1' referenceTime='soon'", ""), "a:F");
  reference.push(Rows{{1}});
  EXPECT_EQ(reference.rows(0), (Rows{{1}}));
  EXPECT_EQ(reference.log(), Strings{"warning: Cannot parse Reference time. We will use "
                                     "1970-01-01T00:00:00.000 as reference time."});
  for (const bool isCheck : {false, true}) {
    auto format = RowHarness::of<FilterRows>(filter("1", "addNowS='1'"), "a:F");
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
  auto good = RowHarness::of<FilterRows>(filter("a &lt; 0"), "a:F");
  good.checkOnly();
  good.push(Rows{{1}, {2}});
  EXPECT_EQ(good.rows(0), (Rows{{1}}));
  EXPECT_EQ(good.rows(1), (Rows{{1}}));

  auto wrong = RowHarness::of<FilterRows>(filter("a &lt; nope"), "a:F");
  wrong.checkOnly();
  wrong.finish();
  ASSERT_EQ(wrong.log().size(), 1u);
  EXPECT_TRUE(startsWith(wrong.log()[0], "error: MathParser Error in FilterRows:\n"));
  EXPECT_NE(wrong.log()[0].find("\n  Error Token:nope\n  Error at position:4"), std::string::npos);
  EXPECT_EQ(wrong.columns(1), "a:F");
  EXPECT_TRUE(wrong.hasFailed());
}

TEST(FilterRows, AnEmptyTableKeepsItsHeaderOnBothPins) {
  auto h = RowHarness::of<FilterRows>(filter("a"), "a:F t:U");
  h.finish();
  EXPECT_EQ(h.columns(0), "a:F t:U");
  EXPECT_EQ(h.columns(1), "a:F t:U");
  EXPECT_FALSE(h.hasFailed());
}

TEST(FilterRows, AnObserverSeesEveryRowAndCanStop) {
  auto h = RowHarness::of<FilterRows>(filter("a &gt; 1", "", kTextInput), "a:F t:U");
  h.push(Rows{{1, "x"}, {2, "y"}, {3, "z"}});
  FakeObserver observer(2);
  h.actionAs<FilterRows>().setObserver(&observer);
  EXPECT_EQ(h.rows(0), (Rows{{2, "y"}}));
  EXPECT_EQ(h.rows(1), (Rows{{1, "x"}}));
  EXPECT_EQ(observer.labels, QStringList{"String Parser"});
  ASSERT_EQ(observer.rows.size(), 2u);
  EXPECT_EQ(observer.rows[0].values, (QStringList{"1", "x"}));
  EXPECT_EQ(observer.rows[0].results, QStringList{"false"});
  EXPECT_EQ(observer.rows[1].results, QStringList{"true"});
  EXPECT_FALSE(h.hasFailed());
}

TEST(FilterRows, TruncationAndSamplingHoldUnderAnObserver) {
  auto truncated = RowHarness::of<FilterRows>(filter("a &gt; 1", "truncate='1'"), "a:F");
  truncated.push(Rows{{2}, {1}, {2}});
  FakeObserver first;
  truncated.actionAs<FilterRows>().setObserver(&first);
  EXPECT_EQ(truncated.rows(0), (Rows{{2}}));
  EXPECT_EQ(first.rows.size(), 2u);
  EXPECT_TRUE(truncated.actionAs<FilterRows>().wasTruncated());

  auto sampled = RowHarness::of<FilterRows>(filter("_n &lt; 2"), "a:F");
  sampled.pushRepeated({1}, 5);
  FakeObserver second;
  sampled.actionAs<FilterRows>().setObserver(&second);
  EXPECT_EQ(sampled.rows(0).size(), 2u);
  ASSERT_EQ(second.rows.size(), 2u);
  EXPECT_EQ(second.rows[1].results, QStringList{"true"});
}

TEST(FilterRows, RowsAllocateNothing) {
  for (const std::string truncate : {"", "truncate='1'"}) {
    for (const bool isOffered : {false, true}) {
      auto h = RowHarness::of<FilterRows>(filter("a+_n &gt; 0", truncate), "a:F t:U");
      h.pushRepeated({1.5, "a text that no short-string buffer would hold"}, 100'200);
      if (isOffered) {
        h.input(0).offerRows();
      }
      h.runWithoutReading(100);
      const long long before = allocationsSoFar();
      h.runWithoutReading(100'000);
      EXPECT_EQ(allocationsSoFar() - before, 0) << truncate;
      EXPECT_EQ(h.input(0).valuesLookedAt() > 0, isOffered);
    }
  }
}

TEST(FilterRows, OffersTheRowsOfEachPin) {
  auto h = RowHarness::of<FilterRows>(filter("a % 3 == 0"), "a:F k:K");
  h.input(0).offerRows();
  for (int i = 0; i < 30; ++i) {
    h.push({i, 100 + i});
  }
  EXPECT_EQ(h.pull(0), (Values{0, 100}));
  EXPECT_EQ(h.pull(0), (Values{3, 103}));
  double numbers[9];
  std::uint32_t keys[19];
  const RowsAhead kept = h.output(0).rowsAheadFrom(1);
  ASSERT_EQ(kept.count, 9u);
  EXPECT_EQ(kept.numbers(0, 0, 9, numbers)[8], 27);
  const RowsAhead others = h.output(1).rowsAheadFrom(1);
  ASSERT_EQ(others.count, 19u);
  EXPECT_EQ(others.keys(1, 1, 18, keys)[0], 104u);
}

TEST(FilterRows, TruncatesAheadAtTheSameRow) {
  auto h = RowHarness::of<FilterRows>(filter("a &lt; 12", "truncate='1'"), "a:F");
  h.input(0).offerRows();
  for (int i = 0; i < 30; ++i) {
    h.push({i});
  }
  EXPECT_EQ(h.rows(0).size(), 12u);
  EXPECT_EQ(h.rows(1), (Rows{{12}}));
  EXPECT_EQ(h.input(0).rowsPulled(), 13);
  EXPECT_EQ(h.output(0).rowsAheadFrom(0).count + h.output(1).rowsAheadFrom(0).count, 13u);
}
