// Batches through a calculator: the same rows, counts and log as row by row.
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include "actions/calculator/calculator.h"
#include "actions/frame/tests/allocation_counter.h"
#include "actions/frame/tests/expression_elements.h"
#include "actions/frame/tests/random_expression.h"
#include "host/testing/batch_comparison.h"

namespace kelvarin::testing {
namespace {

const char kColumns[] = "a:F b:F k:K t:U";
const std::string kInputs =
    "<InputVar column='a'/><InputVar column='b'/><InputVar column='k'/>"
    "<InputVar column='t' isNumber='0'/>";

void expectSameInBatches(const std::string& xml, const std::string& columns, const Rows& rows) {
  const RunOutcome rowByRow = outcomeOf<Calculator>(xml, columns, rows);
  for (const BatchShape& shape : kBatchShapes) {
    EXPECT_EQ(outcomeOf<Calculator>(xml, columns, rows, shape), rowByRow)
        << xml << " in batches of " << shape.rows << " and " << shape.strayRows
        << " stray ones for each";
  }
}

Rows randomRows(unsigned seed, int count) {
  RandomExpressions random(seed);
  Rows rows;
  for (int i = 0; i < count; ++i) {
    rows.push_back(random.row());
  }
  return rows;
}

}  // namespace

TEST(CalculatorStage, RandomOutputsAreThoseOfSingleRows) {
  for (unsigned seed = 0; seed < 8; ++seed) {
    RandomExpressions random(seed);
    const std::string nullKeys = std::to_string(seed % 2);
    const std::string outputs = output("x", random.next()) +
                                output("b", random.next(), "update='1'") +
                                output("y", random.next(), "meta='K'") +
                                output("k", random.next(2), "update='1' meta='F'") +
                                output("t", random.next(1), "update='1' meta='K'");
    expectSameInBatches(
        calculator(outputs, "castToKey1='1' castToKey2='1' castToKey3='" + nullKeys + "'", kInputs),
        kColumns, randomRows(seed, 1500));
  }
}

// Cheap ones are computed for all stored rows of a batch, others for the selected ones.
TEST(CalculatorStage, CheapAndCostlyOutputsAreThoseOfSingleRows) {
  const Rows rows = randomRows(3, 2500);
  for (const char* expression : {"a*2+b", "pow(a,1.5)", "a+_n"}) {
    expectSameInBatches(
        calculator(output("x", expression) + output("b", "b+k", "update='1'"), "", kInputs),
        kColumns, rows);
  }
}

TEST(CalculatorStage, ANumberThatIsNoKeyStopsAtItsRow) {
  Rows rows;
  for (int i = 0; i < 1500; ++i) {
    rows.push_back({i % 100});
  }
  for (const int badRow : {0, 1, 6, 7, 1030, 1499}) {
    for (const double bad : {-1.0, 0.5, 5e9}) {
      Rows withOne = rows;
      withOne[static_cast<std::size_t>(badRow)] = {bad};
      for (const char* modes : {"castToKey1='2' castToKey2='2'", "castToKey1='0' castToKey2='0'"}) {
        expectSameInBatches(
            calculator(output("x", "a*2") + output("k", "a", "meta='K'") + output("n", "_n"),
                       modes),
            "a:F", withOne);
      }
    }
  }
}

// Of a column that no expression uses, too.
TEST(CalculatorStage, ANullKeyStopsAtItsRow) {
  for (const int badRow : {0, 1, 13, 1200, 1999}) {
    Rows rows;
    for (int i = 0; i < 2000; ++i) {
      rows.push_back({i, i == badRow ? Value(nullptr) : Value(i), nullptr});
    }
    for (const char* expression : {"a+1", "k+a"}) {
      for (const char* mode : {"0", "1", "2"}) {
        expectSameInBatches(
            calculator(output("x", expression), std::string("castToKey3='") + mode + "'",
                       "<InputVar column='a'/><InputVar column='k'/>"),
            "a:F k:K other:K", rows);
      }
    }
  }
}

TEST(CalculatorStage, DatesThatAreNumbersKeepTheirNulls) {
  Rows rows(40, {5, nullptr});
  rows.insert(rows.end(), 40, {nullptr, 9});
  for (const char* option : {"0", "1"}) {
    expectSameInBatches(calculator(output("x", "d+1") + output("y", "e+1"),
                                   std::string("emptyETToNull='") + option + "'",
                                   "<InputVar column='d' meta='D'/>"
                                   "<InputVar column='e' meta='D'/>"),
                        "d:F e:K", rows);
  }
}

TEST(CalculatorStage, LargeResultsComeInPieces) {
  std::string wide;
  for (int i = 0; i < 150; ++i) {
    wide += output("x" + std::to_string(i), "a+" + std::to_string(i));
  }
  const std::string inputs = "<InputVar column='a'/><InputVar column='t' isNumber='0'/>";
  Rows rows;
  for (int i = 0; i < 15000; ++i) {
    rows.push_back({i, "t"});
  }
  expectSameInBatches(calculator(wide, "", inputs), "a:F t:U", rows);
  const std::string longTexts = output("x", "toUpper(t)", "meta='U'") +
                                output("y", "t // t", "meta='U'") + output("n", "strlen(t) + a") +
                                output("z", "t", "meta='U'");
  rows.resize(500);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i][1] = std::string(1000 + i % 7 * 5000, static_cast<char>('a' + i % 26));
  }
  expectSameInBatches(calculator(longTexts, "", inputs), "a:F t:U", rows);
}

TEST(CalculatorStage, RandomOutputsOfTextsAreThoseOfSingleRows) {
  for (unsigned seed = 0; seed < 12; ++seed) {
    RandomExpressions random(seed);
    const std::string outputs =
        output("x", random.nextText(), "meta='U'") + output("n", random.nextTextNumber()) +
        output("t", random.nextText(), "update='1' meta='U'") +
        output("k", "strlen(t)", "update='1' meta='K'") + output("u", "a*2", "meta='U'") +
        output("v", random.nextTextTest(), "meta='U'") + output("native", random.next());
    expectSameInBatches(calculator(outputs, "", kInputs), kColumns, randomRows(seed, 1500));
  }
}

// Numbers and keys enter as their shortest texts.
TEST(CalculatorStage, NumbersThatAreTextsAreThoseOfSingleRows) {
  expectSameInBatches(
      calculator(output("x", "a//&quot;|&quot;//k//&quot;|&quot;//t", "meta='U'") +
                     output("y", "strlen(nvl(a,k))"),
                 "",
                 "<InputVar column='a' isNumber='0'/><InputVar column='k' isNumber='0'/>"
                 "<InputVar column='t' isNumber='0'/>"),
      kColumns, randomRows(5, 1500));
}

// Its neighbours are computed by the batch.
TEST(CalculatorStage, ATextThatGrowsTooLongFailsAtItsRow) {
  Rows rows;
  for (int i = 0; i < 40; ++i) {
    rows.push_back({i, i == 17 ? std::string(std::size_t{33} << 20, 'x') : std::to_string(i)});
  }
  for (const char* abort : {"0", "1"}) {
    const std::string xml = calculator(output("x", "strlen(t//t)") + output("y", "a"),
                                       std::string("abortWhenError='") + abort + "'", kTextInput);
    const RunOutcome rowByRow = outcomeOf<Calculator>(xml, "a:F t:U", rows);
    EXPECT_EQ(outcomeOf<Calculator>(xml, "a:F t:U", rows, BatchShape{1000}), rowByRow);
    EXPECT_EQ(rowByRow.hasFailed, abort == std::string("1"));
  }
}

// Texts that are no numbers or no dates are counted, also of columns that no expression uses.
TEST(CalculatorStage, TextsThatEnterAsNumbersAreCountedAtTheirRows) {
  for (const int badRow : {0, 1, 6, 300, 1499}) {
    Rows rows;
    for (int i = 0; i < 1500; ++i) {
      const bool isBad = i == badRow;
      const std::string day = std::to_string(10 + i % 20);
      rows.push_back({i,
                      isBad        ? "x"
                      : i % 3 == 0 ? ""
                                   : " 12.5 ",
                      isBad ? "never" : "2024-01-" + day, isBad ? Value("?") : Value(nullptr),
                      "text"});
    }
    for (const char* option : {"0", "1"}) {
      expectSameInBatches(
          calculator(output("x", "a+t") + output("y", "d*2") + output("z", "strlen(u)"),
                     std::string("dateFormat='yyyy-MM-dd' referenceTime='20000101 00:00:00' "
                                 "emptyETToNull='") +
                         option + "'",
                     "<InputVar column='a'/><InputVar column='t'/><InputVar column='d' meta='D'/>"
                     "<InputVar column='v' meta='D'/><InputVar column='u' isNumber='0'/>"),
          "a:F t:U d:U v:U u:U", rows);
    }
  }
}

// Ending a batch at every other row would take longer than single rows.
TEST(CalculatorStage, ThereIsNoneAnyMoreWhereManyTextsAreNoNumbers) {
  auto h = RowHarness::of<Calculator>(
      calculator(output("x", "a+t"), "", "<InputVar column='a'/><InputVar column='t'/>"),
      "a:F t:U");
  h.pushRepeated({1, "x"}, 200);
  ASSERT_TRUE(h.pull(0).has_value());
  EXPECT_NE(h.actionAs<Calculator>().stage(), nullptr);
  for (int i = 0; i < 150; ++i) {
    ASSERT_TRUE(h.pull(0).has_value());
  }
  EXPECT_EQ(h.actionAs<Calculator>().stage(), nullptr);
  h.finish();
  ASSERT_EQ(h.host().report().outputs.size(), 1u);
  EXPECT_FALSE(h.host().report().outputs[0].isByBatch);
}

// Random numbers and assignments.
TEST(CalculatorStage, ThereIsNoneWhereRowsMatter) {
  const std::pair<std::string, std::string> kOneByOne[] = {
      {output("x", "rand1()"), kTextInput},
      {output("x", "a=a+1"), kTextInput},
      {output("x", "t//ftoa(rand1())", "meta='U'"), kTextInput}};
  for (const auto& [first, inputs] : kOneByOne) {
    auto h =
        RowHarness::of<Calculator>(calculator(first + output("y", "a"), "", inputs), "a:F t:U");
    h.push(Rows{{1, "2"}, {4, "x"}});
    EXPECT_TRUE(h.pull(0).has_value());
    EXPECT_EQ(h.actionAs<Calculator>().stage(), nullptr) << first;
  }
}

TEST(CalculatorStage, ColumnsThatAreNotMadeArePassedOn) {
  auto h = RowHarness::of<Calculator>(calculator(output("x", "a*2")), "a:F t:U");
  h.pushRepeated({1, "text"}, 100);
  ASSERT_TRUE(h.pull(0).has_value());
  const BatchStage* stage = h.actionAs<Calculator>().stage();
  ASSERT_NE(stage, nullptr);
  EXPECT_FALSE(stage->needsRowNumbers());
  const RowBatchPointer batch = h.input(0).restOfBatch();
  const StageResult result = stage->process(*batch, -1);
  EXPECT_EQ(result.rowsDone, 99u);
  EXPECT_EQ(result.outputs[0]->column(0).numbers(), batch->column(0).numbers());
  EXPECT_EQ(result.outputs[0]->column(1).textBytes(), batch->column(1).textBytes());
}

TEST(CalculatorStage, TextsAndDatesAllocateNothingForARow) {
  const std::string outputs =
      output("upper", "toupper(t)", "meta='U'") +
      output("part", "substr(t,2,5) // right(t,3)", "meta='U'") +
      output("trimmed", "trim(t) // ltrim(t) // rtrim(t)", "meta='U'") +
      output("replaced", "replace(t,&quot;a&quot;,&quot;xy&quot;)", "meta='U'") +
      output("chosen", "contains(t,&quot;rk&quot;) ? t // &quot;-&quot; // d : d", "meta='U'") +
      output("compared", "t &gt; &quot;M&quot; ? strlen(t)*2 + a : a") +
      output("converted", "atof(d) + strlen(itoa(a))") + output("printed", "a", "meta='U'") +
      output("match", "regexExtract(d,&quot;([0-9]+)-([0-9]+)&quot;,2)", "meta='U'") +
      output("substituted", "regexReplace(t,&quot;(.)([aeiou]+)&quot;,&quot;_&quot;)", "meta='U'") +
      output("padded", "padLeft(split(d,&quot;-&quot;,1),5,&quot;0&quot;)", "meta='U'") +
      output("elapsed", "toET(d)") + output("date", "toDate(a)", "meta='U'") +
      output("day", "datePrint(d,&quot;dddd d MMMM yyyy&quot;)", "meta='U'") +
      output("later", "dateAdd(d,0,1,10)", "meta='U'");
  auto h = RowHarness::of<Calculator>(
      calculator(outputs,
                 "dateFormat='yyyy-MM-dd' referenceTime='20000101 00:00:00' elapsedTimeUnit='3'",
                 "<InputVar column='a'/><InputVar column='t' isNumber='0'/>"
                 "<InputVar column='d' isNumber='0'/>"),
      "a:F t:U d:U");
  const Value kTexts[] = {"Newark", "Ürgüp", nullptr, "", "a text that is longer than most"};
  for (int i = 0; i < 3000; ++i) {
    h.push(
        {i, kTexts[i % 5], "20" + std::to_string(10 + i % 30) + "-02-1" + std::to_string(i % 7)});
  }
  ASSERT_TRUE(h.pull(0).has_value());
  const BatchStage* stage = h.actionAs<Calculator>().stage();
  ASSERT_NE(stage, nullptr);
  expectNoAllocationsForRows(*stage, *h.input(0).restOfBatch());
}

TEST(CalculatorStage, ManyThreadsShareOne) {
  auto h = RowHarness::of<Calculator>(
      calculator(output("x", "(a+b)^2.5*_n + nvl(k,3)") + output("y", "_n % 7", "meta='K'"), "",
                 kInputs),
      kColumns);
  h.push(randomRows(1, 4000));
  ASSERT_TRUE(h.pull(0).has_value());
  const BatchStage* stage = h.actionAs<Calculator>().stage();
  ASSERT_NE(stage, nullptr);
  const RowBatchPointer batch = h.input(0).restOfBatch();
  const auto bytesOf = [&](long long firstRow) {
    const RowBatchPointer made = stage->process(*batch, firstRow).outputs[0];
    std::string bytes(made->rowCount() * sizeof(double), '\0');
    std::memcpy(bytes.data(), made->column(4).numbers(), bytes.size());
    return bytes;
  };
  const std::string expected[] = {bytesOf(0), bytesOf(1000)};
  std::vector<int> wrong(4);
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < wrong.size(); ++i) {
      threads.emplace_back([&, i] {
        for (int round = 0; round < 50; ++round) {
          wrong[i] += bytesOf(static_cast<long long>(i % 2) * 1000) != expected[i % 2] ? 1 : 0;
        }
      });
    }
  }
  EXPECT_EQ(wrong, std::vector<int>(4));
}

}  // namespace kelvarin::testing
