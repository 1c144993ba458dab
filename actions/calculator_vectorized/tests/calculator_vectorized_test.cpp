#include "actions/calculator_vectorized/calculator_vectorized.h"

#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "actions/frame/tests/allocation_counter.h"
#include "actions/frame/tests/expression_elements.h"
#include "actions/frame/tests/fake_observer.h"
#include "host/testing/batch_comparison.h"

namespace kelvarin::testing {
namespace {

std::string vectorized(const std::string& outputs, const std::string& attributes = "",
                       const std::string& inputs = "") {
  return calculator(outputs, attributes, inputs, "CalculatorVectorized");
}

RowHarness harness(const std::string& xml, const std::string& columns) {
  return RowHarness::of<CalculatorVectorized>(xml, columns);
}

// Rows of alias, column and, in some, the type.
void setVectors(RowHarness& h, const Rows& rows) {
  const char* const columns[] = {"alias:U", "alias:U column:U", "alias:U column:U cast:U"};
  h.columnsOfPin(1, columns[rows.front().size() - 1]);
  for (const Values& row : rows) {
    h.input(1).push(row);
  }
}

const Rows kTwoPairs{{"x", "a1"}, {"x", "a2"}, {"y", "b1"}, {"y", "b2"}};
const char kPairColumns[] = "a1:F a2:F b1:F b2:F";

}  // namespace

TEST(CalculatorVectorized, AddsTheColumnsOfEachElementAfterThoseOfTheElementBefore) {
  auto h = harness(
      vectorized(output("x//\"_sum\"", "x+y+s+own") + output("\"k\"//_n", "_n", "meta='K'") +
                     output("y//\"_t\"", "w//u", "meta='U'"),
                 "", "<InputVar column='c' label='own'/>"),
      "a1:F a2:F b1:F b2:F c:F t:U");
  setVectors(h, {{"x", "a1", "F"},
                 {"x", "a2", "ignored"},
                 {"y", "b1", nullptr},
                 {"y", "b2", ""},
                 {"s", "c", "F"},
                 {"u", "t", "U"},
                 {"w", "a1", "U"},
                 {"w", "a2", nullptr}});
  h.push(Rows{{1, 2, 10, 20, 100, "!"}, {3, nullptr, 30, 40, 200, "?"}});
  EXPECT_EQ(h.rows(0), (Rows{{1, 2, 10, 20, 100, "!", 211, 0, "1!", 222, 0, "2!"},
                             {3, nullptr, 30, 40, 200, "?", 433, 1, "3?", nullptr, 1, nullptr}}));
  EXPECT_EQ(h.columns(0), "a1:F a2:F b1:F b2:F c:F t:U a1_sum:F k0:K b1_t:U a2_sum:F k1:K b2_t:U");
  EXPECT_EQ(h.host().backends(), (Strings{"Fastest Parser", "Fastest Parser", "String Parser"}));
  EXPECT_EQ(h.log(), Strings{});
}

TEST(CalculatorVectorized, EveryNumberOfOutputsYieldsTheSameValues) {
  for (int count = 1; count <= 5; ++count) {
    std::string outputs;
    Values row{1, 2, 10, 20};
    for (const int element : {0, 1}) {
      for (int i = 0; i < count; ++i) {
        row.emplace_back(element == 0 ? 11 + i : 22 + i);
      }
    }
    for (int i = 0; i < count; ++i) {
      outputs += output("\"o" + std::to_string(i) + "_\"//_n", "x+y+" + std::to_string(i));
    }
    auto h = harness(vectorized(outputs), kPairColumns);
    setVectors(h, kTwoPairs);
    h.pushRepeated({1, 2, 10, 20}, 3);
    EXPECT_EQ(h.rows(0), (Rows{row, row, row})) << count;
  }
}

TEST(CalculatorVectorized, WithoutAVectorItGoesOnWithOneElement) {
  for (const bool isLinked : {false, true}) {
    auto h = harness("<CalculatorVectorized name='v'/>", "a:F");
    if (isLinked) {
      h.columnsOfPin(1, "only:U");
    }
    h.push({4});
    EXPECT_EQ(h.rows(0), (Rows{{4, nullptr}}));
    EXPECT_EQ(h.columns(0), "a:F NewVar_0:F");
    ASSERT_FALSE(h.log().empty());
    EXPECT_EQ(h.log().back(), "warning: Warning: No vector as input?");
  }
}

TEST(CalculatorVectorized, AnAliasThatComesAgainIsAVectorOfItsOwn) {
  auto h = harness(vectorized(output("x//\"_2\"", "x*2+y-y")), kPairColumns);
  setVectors(h, {{"x", "a1"}, {"x", "a2"}, {"y", "b1"}, {"y", "b2"}, {"x", "b2"}, {"x", "b1"}});
  h.push({1, 2, 3, 4});
  EXPECT_EQ(h.rows(0), (Rows{{1, 2, 3, 4, 2, 4}}));
  ASSERT_EQ(h.log().size(), 1u);
  EXPECT_TRUE(startsWith(h.log()[0],
                         "warning: The variable 'x' is defined twice, by column 'a2' "
                         "and by column 'b1'"));
}

TEST(CalculatorVectorized, WrongTablesStopTheRunBeforeAnyRow) {
  struct Case {
    Rows table;
    std::string text;
  };
  const Case cases[] = {
      {{{"x", "a1"}, {"x", "a2"}, {"y", "b1"}, {"y", "b2"}, {"y", "a1"}},
       "Error: Vector of wrong size when defining variable 'x'?"},
      // The walk is from the last variable to the first.
      {{{"x", "a1"}, {"x", "a2"}, {"y", "b1"}, {"y", "b2"}, {"z", "a1"}, {"z", "a2"}, {"z", "b1"}},
       "Error: Vector of wrong size when defining variable 'y'?"},
      {{{"x", "a1"}, {"x", "nope"}}, "Error: Column 'nope' not found"},
      {{{"x", "a1"}, {"x", "t"}}, "Error: Column 'a1' and 't' must have the same type"},
      {{{"x", "a1", "Q"}, {"x", "a2", "F"}},
       "The table of variables gives 'x' the type 'Q'. It takes F or K (number), U (text) or D "
       "(date)."},
      {{{"a1"}},
       "Error: The table on Pin 1 must have at least 3 columns (AliasName,VarName,castToNumber)."},
      {{{"x", "a1"}, {"x", nullptr}},
       "The table of variables names no column on its row 1 (counted from 0). Each row needs an "
       "alias and a column name."},
  };
  for (const Case& c : cases) {
    auto h = harness(vectorized(output("\"n\"//_n", "1")), std::string(kPairColumns) + " t:U");
    setVectors(h, c.table);
    h.push({1, 2, 3, 4, "t"});
    EXPECT_EQ(h.rows(0), Rows{});
    EXPECT_EQ(h.log(), Strings{"error: " + c.text});
    EXPECT_TRUE(h.hasFailed());
  }
}

TEST(CalculatorVectorized, RowsWithoutAnAliasAreOneVectorNamedByItsLastColumn) {
  auto h = harness(vectorized(output("a2//\"_\"//_n", "a2*2")), kPairColumns);
  setVectors(h, {{"", "a1"}, {"", "a2"}});
  h.push({1, 2, 3, 4});
  EXPECT_EQ(h.rows(0), (Rows{{1, 2, 3, 4, 2, 4}}));
  EXPECT_EQ(h.columns(0), std::string(kPairColumns) + " a1_0:F a2_1:F");
  EXPECT_EQ(h.log(), Strings{});
}

TEST(CalculatorVectorized, WrongNamesStopTheRunBeforeAnyRow) {
  struct Case {
    std::string outputs;
    std::string start;
  };
  const Case cases[] = {
      {output("3+4", "1"), "Math Parser Error in expression '3+4':\nResult is not a string"},
      {output("x//b64toa(\"AA==\")", "1"),
       "Math Parser Error in name expression 'x//b64toa(\"AA==\")':\nThe resulting name has a "
       "control character (code 0) at position 2."},
      {output("_nullS", "1"), "Math Parser Error in expression '_nullS':\nResult is not a string"},
      {output("x//nope", "1"),
       "Math Parser Error in name expression 'x//nope':\nUndefined token \"nope\" found at "
       "position 3.\nAt position 3."},
      {output("x-1", "1"), "Math Parser Error in name expression 'x-1':\n"},
      {output("x", "1"), "Error: Updating/Creating the column 'a1' several times."},
      {output("\"same\"", "1"), "Error: Updating/Creating the column 'same' several times."},
      {output("\"o\"//_n", "1") + output("\"o\"//_n", "2"),
       "Error: Updating/Creating the column 'o0' several times."},
  };
  for (const Case& c : cases) {
    auto h = harness(vectorized(c.outputs), kPairColumns);
    setVectors(h, kTwoPairs);
    h.push({1, 2, 3, 4});
    EXPECT_EQ(h.rows(0), Rows{});
    ASSERT_EQ(h.log().size(), 1u);
    EXPECT_TRUE(startsWith(h.log()[0], "error: " + c.start)) << h.log()[0];
    EXPECT_TRUE(h.hasFailed());
  }
}

TEST(CalculatorVectorized, GraphParametersAreReplacedInNames) {
  auto h = harness(vectorized(output("\"${prefix}\"//x", "x")), "a:F b:F");
  h.parameters().setValue("prefix", "new_");
  h.parameters().setValue("first", "a");
  setVectors(h, {{"x", "${first}"}, {"x", "b"}});
  h.push({1, 2});
  EXPECT_EQ(h.rows(0), (Rows{{1, 2, 1, 2}}));
  EXPECT_EQ(h.columns(0), "a:F b:F new_a:F new_b:F");
}

TEST(CalculatorVectorized, ColumnsEnterExpressionsAsTheirCastSays) {
  auto h = harness(
      vectorized(output("\"sum\"//_n", "d+k+n") + output("\"text\"//_n", "u", "meta='U'"),
                 "elapsedTimeUnit='3' referenceTime='20200101 00:00:00' dateFormat='yyyy-MM-dd'"),
      "d1:U d2:U k1:K k2:K n1:U n2:U");
  setVectors(h, {{"d", "d1", "D"},
                 {"d", "d2", "D"},
                 {"k", "k1", "K"},
                 {"k", "k2", "K"},
                 {"n", "n1", "F"},
                 {"n", "n2", "F"},
                 {"u", "k2", "U"},
                 {"u", "k1", "U"}});
  h.push(Rows{{"2020-01-02", "2020-01-03", 10, 20, "100", "200"},
              {"2020-01-02", "2020-01-03", 10, 20, "x", "300"},
              {"2020-01-11", "", 10, 20, "1", "y"}});
  EXPECT_EQ(h.rows(0),
            (Rows{{"2020-01-02", "2020-01-03", 10, 20, "100", "200", 111, "20", 222, "10"},
                  {"2020-01-02", "2020-01-03", 10, 20, "x", "300", nullptr, "20", 322, "10"},
                  {"2020-01-11", "", 10, 20, "1", "y", 21, "20", nullptr, "10"}}));
  // Each column is warned about by its own name.
  ASSERT_EQ(h.log().size(), 2u);
  EXPECT_TRUE(startsWith(h.log()[0], "warning: Column 'n1' is a text column used as a number: 1 "));
  EXPECT_TRUE(startsWith(h.log()[1], "warning: Column 'n2' is a text column used as a number: 1 "));
}

TEST(CalculatorVectorized, RefusedTextsOfManyColumnsAreCounted) {
  auto h = harness(vectorized(output("\"o\"//_n", "x")), "a:U b:U c:U d:U e:U f:U g:U");
  setVectors(h,
             {{"x", "a"}, {"x", "b"}, {"x", "c"}, {"x", "d"}, {"x", "e"}, {"x", "f"}, {"x", "g"}});
  h.pushRepeated({"?", "?", "?", "?", "?", "?", "?"}, 2);
  h.finish();
  ASSERT_EQ(h.log().size(), 6u);
  EXPECT_EQ(h.log()[5],
            "warning: 2 more column(s) of the variable 'x' are text columns used as numbers: 4 "
            "value(s) were no numbers and counted as missing.");
}

TEST(CalculatorVectorized, AFailureNamesTheColumnThatItsElementComputes) {
  const std::string outputs = output("\"o\"//_n", "x&gt;1 ? t : x") + output("\"p\"//_n", "x");
  const Rows table{{"x", "a", "F"}, {"x", "b", "F"}, {"t", "c", "U"}};
  auto stops = harness(vectorized(outputs), "a:F b:F c:U");
  setVectors(stops, table);
  stops.push(Rows{{1, 1, "p"}, {0, 2, "q"}});
  EXPECT_EQ(stops.rows(0), (Rows{{1, 1, "p", 1, 1, 1, 1}}));
  ASSERT_EQ(stops.log().size(), 1u);
  EXPECT_TRUE(startsWith(stops.log()[0],
                         "error: Math Parser Error in expression 'o1':\n The expression evaluated "
                         "to a String and a Number was expected\n On Data Row 1 at position "));
  EXPECT_TRUE(contains(stops.log()[0],
                       "check button  inside the property window of the "
                       "'CalculatorVectorized' action"));
  EXPECT_TRUE(stops.hasFailed());

  auto goesOn = harness(vectorized(outputs, "abortWhenError='0'"), "a:F b:F c:U");
  setVectors(goesOn, table);
  goesOn.push(Rows{{0, 2, "q"}, {2, 3, "r"}});
  EXPECT_EQ(goesOn.rows(0),
            (Rows{{0, 2, "q", 0, 0, nullptr, 2}, {2, 3, "r", nullptr, 2, nullptr, 3}}));
  ASSERT_EQ(goesOn.log().size(), 1u);
  EXPECT_TRUE(startsWith(goesOn.log()[0],
                         "warning: 3 evaluation(s) failed and gave no value. The "
                         "first was expression 'o1' on data row 0 (counted from 0): "));
}

TEST(CalculatorVectorized, WhatAnExpressionAssignsEndsWithIt) {
  auto h = harness(
      vectorized(output("\"o\"//_n", "s=s+x") + output("\"p\"//_n", "s+(_n=7)"), "useJIT='0'"),
      "a:F b:F c:F");
  setVectors(h, {{"x", "a"}, {"x", "b"}, {"s", "c"}});
  h.pushRepeated({1, 2, 100}, 2);
  EXPECT_EQ(h.rows(0), (Rows{{1, 2, 100, 101, 107, 102, 107}, {1, 2, 100, 101, 107, 102, 107}}));
}

TEST(CalculatorVectorized, ACheckNamesTheNewColumnsAndReportsWrongExpressions) {
  auto h = harness(vectorized(output("x//\"_new\"", "x+nope")), kPairColumns);
  setVectors(h, kTwoPairs);
  h.checkOnly();
  h.finish();
  EXPECT_EQ(h.columns(0), "a1:F a2:F b1:F b2:F a1_new:F a2_new:F");
  ASSERT_FALSE(h.log().empty());  // a hint may follow
  EXPECT_TRUE(startsWith(h.log()[0], "error: Math Parser Error in expression 'x//\"_new\"':\n "));
  EXPECT_TRUE(contains(h.log()[0], "\n  Error Token:nope"));
  EXPECT_TRUE(h.hasFailed());
}

TEST(CalculatorVectorized, AnEmptyInputKeepsItsHeader) {
  auto h = harness(vectorized(output("x//\"_2\"", "x")), kPairColumns);
  setVectors(h, kTwoPairs);
  EXPECT_EQ(h.rows(0), Rows{});
  EXPECT_EQ(h.columns(0), "a1:F a2:F b1:F b2:F a1_2:F a2_2:F");
  EXPECT_FALSE(h.hasFailed());
}

TEST(CalculatorVectorized, AnObserverSeesAllElements) {
  auto h = harness(vectorized(output("\"o\"//_n", "x*2"), "addNowS='1' dateFormat='yyyy'",
                              "<InputVar column='b1' label='s'/>"),
                   kPairColumns);
  setVectors(h, kTwoPairs);
  h.push(Rows{{1, 2, 3, 4}, {5, nullptr, 7, 8}});
  FakeObserver observer;
  h.actionAs<CalculatorVectorized>().setObserver(&observer);
  EXPECT_EQ(h.rows(0), (Rows{{1, 2, 3, 4, 2, 4}, {5, nullptr, 7, 8, 10, nullptr}}));
  EXPECT_EQ(observer.labels, QStringList{"String Parser"});
  ASSERT_EQ(observer.rows.size(), 2u);
  EXPECT_TRUE(
      startsWith(observer.variables(1), "s=7 x[0]=5 x[1]=null y[0]=7 y[1]=8 _n=1 _nowS='20"));
  EXPECT_EQ(observer.results(1), "o0=10 o1=null");
}

namespace {

class Copy : public CalculatorVectorized {
 public:
  using CalculatorVectorized::CalculatorVectorized;
  void setPrimary(ActionItem* primary) { m_primary = primary; }
};

const std::string kSquares = vectorized(output("x//\"_2\"", "x*x"));

}  // namespace

TEST(CalculatorVectorized, CopiesTakeTheTableOfThePrimary) {
  auto primary = RowHarness::of<Copy>(kSquares, "a1:F a2:F");
  setVectors(primary, {{"x", "a1"}, {"x", "a2"}});
  primary.push({1, 2});
  primary.init();
  auto copy = RowHarness::of<Copy>(kSquares, "a1:F a2:F");
  copy.columnsOfPin(1, "alias:U");
  copy.push({3, 4});
  copy.actionAs<Copy>().setPrimary(&primary.action());
  Rows rowsOfCopy;
  std::thread thread([&] { rowsOfCopy = copy.rows(0); });  // waits for the table
  EXPECT_EQ(primary.rows(0), (Rows{{1, 2, 1, 4}}));
  thread.join();
  EXPECT_EQ(rowsOfCopy, (Rows{{3, 4, 9, 16}}));
  EXPECT_EQ(copy.input(1).rowsPulled(), 0);
}

TEST(CalculatorVectorized, CopiesEndWhereThePrimaryReadsNoTable) {
  auto primary = RowHarness::of<Copy>(kSquares, "a1:F a2:F");
  primary.input(0).hideColumns();
  primary.init();
  auto copy = RowHarness::of<Copy>(kSquares, "a1:F a2:F");
  copy.push({3, 4});
  copy.actionAs<Copy>().setPrimary(&primary.action());
  std::thread thread([&] { EXPECT_EQ(copy.rows(0), Rows{}); });
  primary.finish();
  thread.join();
  EXPECT_TRUE(copy.hasFailed());

  auto stopped = RowHarness::of<Copy>(kSquares, "a1:F a2:F");
  stopped.push({3, 4});
  stopped.actionAs<Copy>().setPrimary(&primary.action());
  stopped.init();
  std::thread waiting([&] { EXPECT_EQ(stopped.rows(0), Rows{}); });
  stopped.run().status = GlobalParameters::RunningState::stoppedByUser;
  primary.action().wakeAll();
  waiting.join();
  EXPECT_EQ(stopped.state(), GlobalParameters::RunningState::stoppedByUser);
}

TEST(CalculatorVectorized, NumericRowsAllocateNothing) {
  auto h = harness(vectorized(output("\"o\"//_n", "x*y+_n") + output("\"k\"//_n", "7", "meta='K'")),
                   kPairColumns);
  setVectors(h, kTwoPairs);
  h.pushRepeated({1, 2, 3, 4}, 10'200);
  h.runWithoutReading(100);
  const long long before = allocationsSoFar();
  h.runWithoutReading(10'000);
  EXPECT_EQ(allocationsSoFar() - before, 0);
}

TEST(CalculatorVectorized, ATableOfAHundredThousandRowsIsReadInNoTime) {
  constexpr int kElements = 100'000;
  std::string columns;
  Values row;
  Rows table;
  for (int i = 0; i < kElements; ++i) {
    const std::string name = "c" + std::to_string(i);
    columns += name + ":F ";
    row.emplace_back(i);
    table.push_back({"x", name});
  }
  auto h = harness(vectorized(output("x//\"_new\"", "x+1")), columns);
  setVectors(h, table);
  h.push(row);
  h.init();
  const auto start = std::chrono::steady_clock::now();
  h.runWithoutReading(1);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(h.output(0).metaData.columnCount(), 2 * kElements);
  EXPECT_LT(seconds.count(), 5.0);  // a fraction of a second, but ten minutes where it is quadratic
}

// Vectors, a variable of all elements and the row number; a key that fails in one element; texts.
TEST(CalculatorVectorized, BatchesYieldTheRowsOfSingleOnes) {
  Rows rows;
  for (int i = 0; i < 2500; ++i) {
    rows.push_back({i, i % 9 == 0 ? Value(nullptr) : Value(i / 2.0), 3 * i, i == 2000 ? -4 : 1, i});
  }
  const std::string outputs = output("x//\"_s\"", "x*y+c+_n") + output("y//\"_c\"", "c-y") +
                              output("y//\"_k\"", "y", "meta='K'") +
                              output("x//\"_t\"", "ftoa(x)//&quot;-&quot;//itoa(y+_n)", "meta='U'");
  const auto setTable = [](RowHarness& h) { setVectors(h, kTwoPairs); };
  for (const char* mode : {"castToKey1='1'", "castToKey1='2'"}) {
    const std::string xml = vectorized(outputs, mode, "<InputVar column='c'/>");
    const std::string columns = std::string(kPairColumns) + " c:K";
    const RunOutcome rowByRow = outcomeOf<CalculatorVectorized>(xml, columns, rows, {}, setTable);
    EXPECT_EQ(rowByRow.rows[0].size(), mode == std::string("castToKey1='1'") ? 2500u : 2000u);
    for (const BatchShape& shape : kBatchShapes) {
      EXPECT_EQ(outcomeOf<CalculatorVectorized>(xml, columns, rows, shape, setTable), rowByRow)
          << mode << " in batches of " << shape.rows;
    }
  }
}

}  // namespace kelvarin::testing
