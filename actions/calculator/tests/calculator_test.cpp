#include "actions/calculator/calculator.h"

#include <gtest/gtest.h>

#include "actions/frame/tests/allocation_counter.h"
#include "actions/frame/tests/expression_elements.h"
#include "actions/frame/tests/fake_observer.h"
#include "host/testing/row_harness.h"

namespace kelvarin::testing {
namespace {

RowHarness harness(const std::string& xml, const std::string& columns) {
  return RowHarness::of<Calculator>(xml, columns);
}

const Rows kTexts{{1, "p"}, {2, "q"}, {0, "r"}};

}  // namespace

TEST(Calculator, AddsColumnsAfterTheInputsAndLeavesThoseAlone) {
  auto h = harness(calculator(output("double", "a*2") + output("key", "a+1", "meta='K'") +
                                  output("text", "t//\"!\"", "meta='U'") + output("row", "_n") +
                                  output("none", "") + output("noText", "", "meta='U'"),
                              "castToKey2='0' useJIT='0'", kTextInput),
                   "a:F t:U");
  h.push(Rows{{1.5, "x"}, {nullptr, "y"}, {3, ""}});
  EXPECT_EQ(h.rows(0), (Rows{{1.5, "x", 3, 2, "x!", 0, nullptr, nullptr},
                             {nullptr, "y", nullptr, nullptr, "y!", 1, nullptr, nullptr},
                             {3, "", 6, 4, "!", 2, nullptr, nullptr}}));
  EXPECT_EQ(h.columns(0), "a:F t:U double:F key:K text:U row:F none:F noText:U");
  EXPECT_EQ(h.host().backends(), (Strings{"Fast Parser", "Fast Parser", "String Parser",
                                          "Fast Parser", "Fast Parser", "String Parser"}));
  auto without = harness("<Calculator name='c'/>", "a:F");
  without.push(Rows{{1}});
  EXPECT_EQ(without.rows(0), (Rows{{1, nullptr}}));
  EXPECT_EQ(without.columns(0), "a:F NewVar:F");
}

TEST(Calculator, UpdatedColumnsKeepTheirIndexAndTakeTheOutputsType) {
  auto h = harness(calculator(output("a", "a+b", "update='1'") +
                                  output("t", "\"&lt;\"//t", "update='1' meta='U'") +
                                  output("b", "a*100", "update='1' meta='K'"),
                              "", kTextInput + "<InputVar column='b'/>"),
                   "a:F t:U b:F");
  h.push(Rows{{1, "x", 10}, {2, "y", 20}});
  // Every expression sees the row as it came in.
  EXPECT_EQ(h.rows(0), (Rows{{11, "<x", 100}, {22, "<y", 200}}));
  EXPECT_EQ(h.columns(0), "a:F t:U b:K");
  EXPECT_EQ(h.log(), Strings{});
}

TEST(Calculator, EveryNumberOfOutputsYieldsTheSameValues) {
  for (int count = 1; count <= 5; ++count) {
    for (const bool updates : {false, true}) {
      std::string outputs = updates ? output("a", "a+1", "update='1'") : output("o1", "a+1");
      Values row = updates ? Values{11} : Values{10, 11};
      for (int i = 2; i <= count; ++i) {
        outputs += output("o" + std::to_string(i), "a+" + std::to_string(i));
        row.emplace_back(10 + i);
      }
      auto h = harness(calculator(outputs), "a:F");
      h.pushRepeated({10}, 3);
      EXPECT_EQ(h.rows(0), (Rows{row, row, row})) << count << (updates ? " updating" : "");
    }
  }
}

TEST(Calculator, WrongDefinitionsStopTheRunBeforeAnyRow) {
  const std::string twice = "Error: Updating/Creating the column '";
  const struct {
    std::string xml;
    std::string text;
  } cases[] = {
      {calculator(output("x", "1"), "", "<InputVar column='zz'/>"), "Error: Column 'zz' not found"},
      {calculator(output("x", "1"), "", "<InputVar label='v'><SL><S>a</S><S>t</S></SL></InputVar>"),
       "Error: Column 'a' and 't' must have the same type"},
      {calculator(output("zz", "1", "update='1'")), "ERROR: column to update 'zz' not found.\n"},
      {calculator(output("x", "1") + output("x", "2")), twice + "x' several times."},
      {calculator(output("a", "1", "update='1'") + output("a", "2", "update='1'")),
       twice + "a' several times."},
      {calculator(output("b", "1")), twice + "b' several times."},
      {calculator(output("o", "_n+1"), "", "<InputVar column='a' label='_n'/>"),
       "Error: Column 'a' cannot have the label '_n', which is the number of the row. Give it "
       "another label, or set addN='0' to do without the number."},
      {calculator(output("x", "1"), "addNowS='1'", "<InputVar column='t' meta='D'/>"),
       "filterRow error: Date format is unknown"},
  };
  for (const auto& c : cases) {
    auto h = harness(c.xml, "a:F t:U b:F");
    h.push(Rows{{1, "x", 2}});
    EXPECT_EQ(h.rows(0), Rows{});
    EXPECT_EQ(h.log(), Strings{"error: " + c.text});
    EXPECT_TRUE(h.hasFailed());
  }
}

TEST(Calculator, NamesMayHaveGraphParametersAndThatOfTheRowNumberThatIsOff) {
  auto h = harness(
      calculator(output("${new}", "_n"), "addN='0'", "<InputVar column='${old}' label='_n'/>"),
      "a:F");
  h.parameters().setValue("old", "a");
  h.parameters().setValue("new", "fresh");
  h.push(Rows{{7}});
  EXPECT_EQ(h.rows(0), (Rows{{7, 7}}));
  EXPECT_EQ(h.columns(0), "a:F fresh:F");
}

TEST(Calculator, RunsAndChecksReportEveryWrongExpressionWithItsName) {
  const std::string xml = calculator(output("x", "a+nope") + output("good", "a") +
                                     output("y", "also(1)") + output("z", "\"text\""));
  const std::string start = "error: Math Parser Error in expression named '";
  auto run = harness(xml, "a:F");
  run.push(Rows{{1}});
  EXPECT_EQ(run.rows(0), Rows{});
  ASSERT_EQ(run.log().size(), 2u);  // what a text does for a number shows at a row only
  EXPECT_TRUE(startsWith(run.log()[0], start + "x':\n "));
  EXPECT_TRUE(contains(run.log()[0], "\"nope\""));
  EXPECT_TRUE(contains(run.log()[0],
                       "\n On Data Row 0 at position 2: Please click the \"? (F7)\" check button  "
                       "inside the property window of the 'Calculator' action"));
  EXPECT_TRUE(startsWith(run.log()[1], start + "y':\n "));
  ASSERT_EQ(run.explanations().size(), 4u);  // a location and a hint for each
  EXPECT_TRUE(startsWith(run.explanations()[1], "'nope' is neither"));
  EXPECT_TRUE(run.hasFailed());

  auto check = harness(xml, "a:F");
  check.checkOnly();
  check.finish();
  ASSERT_EQ(check.log().size(), 3u);
  EXPECT_TRUE(contains(check.log()[0], "\n  Error Token:nope\n  Error at position:2"));
  EXPECT_TRUE(startsWith(check.log()[2],
                         start + "z':\n The expression evaluated to a String and a Number was "
                                 "expected"));
  EXPECT_EQ(check.columns(0), "a:F x:F good:F y:F z:F");
  EXPECT_TRUE(check.hasFailed());
}

TEST(Calculator, AFailedRowStopsTheRunOrYieldsAMissingValue) {
  const std::string outputs = output("x", "a&gt;1 ? t : a") + output("y", "a+1");
  auto stops = harness(calculator(outputs, "", kTextInput), "a:F t:U");
  stops.push(kTexts);
  EXPECT_EQ(stops.rows(0), (Rows{{1, "p", 1, 2}}));
  ASSERT_EQ(stops.log().size(), 1u);
  EXPECT_TRUE(startsWith(stops.log()[0],
                         "error: Math Parser Error in expression named 'x':\n The "
                         "expression evaluated to a String and a Number was expected"
                         "\n On Data Row 1 at position "));
  EXPECT_TRUE(stops.hasFailed());

  auto goesOn = harness(calculator(outputs, "abortWhenError='0'", kTextInput), "a:F t:U");
  goesOn.push(kTexts);
  EXPECT_EQ(goesOn.rows(0), (Rows{{1, "p", 1, 2}, {2, "q", nullptr, 3}, {0, "r", 0, 1}}));
  ASSERT_EQ(goesOn.log().size(), 1u);
  EXPECT_TRUE(startsWith(goesOn.log()[0], "warning: 1 evaluation(s) failed"));
  EXPECT_FALSE(goesOn.hasFailed());
}

TEST(Calculator, AnUnparsableReferenceTimeIsOneWarning) {
  const std::string xml = calculator(output("x", "_now &gt; 0") + output("y", "_now &gt; 0"),
                                     "addNow='1' referenceTime='soon'", "");
  for (const bool isCheck : {false, true}) {
    auto h = harness(xml, "t:U");
    if (isCheck) {
      h.checkOnly();
    }
    h.push(Rows{{"2020"}});
    EXPECT_EQ(h.rows(0), isCheck ? Rows{} : (Rows{{"2020", 1, 1}}));
    EXPECT_EQ(h.log(),
              Strings{"warning: Calculator: Cannot parse Reference time. We will use 19700101 "
                      "00:00:00 as reference time."});
    EXPECT_FALSE(h.hasFailed());
  }
}

TEST(Calculator, KeepsASortOrderUpToTheFirstComputedColumn) {
  using Order = QVector<SortInfos>;
  const SortInfos byA(0, SortType::numberAscending);
  const SortInfos byT(1, SortType::textDescending);
  const auto orderAfter = [&](const std::string& outputs, const Order& order) {
    auto h = harness(calculator(outputs), "a:F t:U b:F");
    h.input(0).setSortOrder(order);
    h.push(Rows{{1, "x", 2}});
    h.finish();
    return h.sortOrder(0);
  };
  EXPECT_EQ(orderAfter(output("n", "1"), {byA, byT}), (Order{byA, byT}));
  EXPECT_EQ(orderAfter(output("b", "1", "update='1'"), {byA, byT}), (Order{byA, byT}));
  EXPECT_EQ(orderAfter(output("a", "1", "update='1'"), {byT, byA}), (Order{byT}));
  // A text that updates a sorted column cuts only where a number updates something, too.
  const std::string text = output("t", "\"\"", "update='1' meta='U'");
  EXPECT_EQ(orderAfter(text, {byA, byT}), (Order{byA, byT}));
  EXPECT_EQ(orderAfter(text + output("b", "1", "update='1'"), {byA, byT}), (Order{byA}));
}

TEST(Calculator, TakesFurtherVariablesFromTheTableOnItsSecondPin) {
  auto h = harness(calculator(output("x", "v+w+b") + output("y", "u//u", "meta='U'"), "", ""),
                   "a:F b:F t:U");
  h.columnsOfPin(1, "alias:U name:U cast:U");
  for (const Values& row :
       Rows{{"v", "a", "F"}, {"w", "a", nullptr}, {"u", "t", "U"}, {nullptr, "b", ""}}) {
    h.input(1).push(row);
  }
  h.push(Rows{{1, 10, "p"}, {2, 20, "q"}});
  EXPECT_EQ(h.rows(0), (Rows{{1, 10, "p", 12, "pp"}, {2, 20, "q", 24, "qq"}}));

  auto one = harness(calculator(output("x", "a+1"), "", ""), "a:F");
  one.columnsOfPin(1, "only:U");
  one.input(1).push({"a"});
  one.push(Rows{{1}});
  EXPECT_EQ(one.rows(0), (Rows{{1, 2}}));

  auto wrong = harness(calculator(output("x", "1")), "a:F");
  wrong.columnsOfPin(1, "alias:U name:U cast:U");
  wrong.input(1).push({"v", "a", "Q"});
  wrong.push(Rows{{1}});
  EXPECT_EQ(wrong.rows(0), Rows{});
  ASSERT_EQ(wrong.log().size(), 1u);
  EXPECT_TRUE(contains(wrong.log()[0], "'v' the type 'Q'"));
  EXPECT_TRUE(wrong.hasFailed());
}

TEST(Calculator, AnEmptyTableKeepsItsHeader) {
  auto h = harness(calculator(output("x", "a")), "a:F");
  EXPECT_EQ(h.rows(0), Rows{});
  EXPECT_EQ(h.columns(0), "a:F x:F");
  EXPECT_FALSE(h.hasFailed());

  auto unannounced = harness(calculator(output("x", "a")), "a:F");
  unannounced.input(0).hideColumns();
  EXPECT_EQ(unannounced.rows(0), Rows{});
  EXPECT_EQ(unannounced.columns(0), "");
  EXPECT_FALSE(unannounced.hasFailed());
}

TEST(Calculator, AnObserverSeesEveryRowAndCanStop) {
  auto h = harness(calculator(output("x", "a=a*2") + output("y", "t//t", "meta='U'"),
                              "addNow='1' referenceTime='20000101 00:00:00'", kTextInput),
                   "a:F t:U");
  h.columnsOfPin(1, "alias:U name:U");
  h.input(1).push({"v", "nowhere"});
  h.push(Rows{{1, "p"}, {2, nullptr}, {3, "r"}});
  FakeObserver observer(2);
  h.actionAs<Calculator>().setObserver(&observer);
  EXPECT_EQ(h.rows(0), (Rows{{1, "p", 2, "pp"}, {2, nullptr, 4, nullptr}}));
  EXPECT_EQ(observer.labels, (QStringList{"String Parser", "String Parser"}));
  ASSERT_EQ(observer.rows.size(), 2u);
  // The assigned value is the engine's, the column's stays in the row.
  EXPECT_TRUE(startsWith(observer.variables(1), "a=4 t=null _n=1 _now="));
  EXPECT_EQ(observer.results(1), "x=4 y=null");
  EXPECT_EQ(observer.rows[1].number, 1);
  EXPECT_FALSE(h.hasFailed());
  // The table on pin 1 is not read while an observer looks on.
  EXPECT_EQ(h.input(1).rowsPulled(), 0);
}

TEST(Calculator, AnObserverSeesEveryFailureOfARow) {
  const std::string fails = "a&gt;1 ? t : a";
  const std::string outputs = output("x", fails) + output("y", "a+1") + output("z", fails);
  for (const bool isAborting : {false, true}) {
    auto h =
        harness(calculator(outputs, isAborting ? "" : "abortWhenError='0'", kTextInput), "a:F t:U");
    h.push(kTexts);
    FakeObserver observer;
    h.actionAs<Calculator>().setObserver(&observer);
    EXPECT_EQ(h.rows(0).size(), isAborting ? 1u : 3u);
    ASSERT_EQ(observer.rows.size(), isAborting ? 2u : 3u);
    const ObservedRow& failed = observer.rows[1];
    EXPECT_EQ(observer.variables(1), "a=2 t='q' _n=1");
    EXPECT_EQ(observer.results(1), isAborting ? "" : "x=null y=3 z=null");
    EXPECT_EQ(failed.isLast, isAborting);
    ASSERT_EQ(failed.failures.size(), isAborting ? 1u : 2u);
    EXPECT_EQ(failed.failures.back().output, isAborting ? 0 : 2);
    EXPECT_TRUE(contains(failed.failures.front().text.toStdString(), "On Data Row 1 "));
    EXPECT_TRUE(observer.rows[0].failures.empty());
  }
}

TEST(Calculator, NumericRowsAllocateNothing) {
  auto h = harness(calculator(output("x", "a*2+_n") + output("a", "a+1", "update='1'") +
                                  output("k", "7", "meta='K'"),
                              "", kTextInput + "<InputVar column='k2'/>"),
                   "a:F t:U k2:K");
  h.pushRepeated({1.5, "a text that no short-string buffer would hold", 3}, 100'200);
  h.runWithoutReading(100);
  const long long before = allocationsSoFar();
  h.runWithoutReading(100'000);
  EXPECT_EQ(allocationsSoFar() - before, 0);
}

TEST(Calculator, AnAssignmentIsNotSeenByLaterOutputs) {
  auto h =
      harness(calculator(output("x", "a*10") + output("y", "a=a+1") + output("z", "a*100")), "a:F");
  Rows expected;
  for (int i = 0; i < 20; ++i) {
    h.push({i});
    expected.push_back({i, i * 10, i + 1, i * 100});
  }
  EXPECT_EQ(h.rows(0), expected);
}

}  // namespace kelvarin::testing
