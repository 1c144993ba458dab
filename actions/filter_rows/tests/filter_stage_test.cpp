// Batches through a filter: the same rows on both pins, and the same counts and log, as row by row.
#include <gtest/gtest.h>

#include "actions/filter_rows/filter_rows.h"
#include "actions/frame/tests/allocation_counter.h"
#include "actions/frame/tests/random_expression.h"
#include "host/contract/late_texts.h"
#include "host/testing/batch_comparison.h"

namespace kelvarin::testing {
namespace {

const char kColumns[] = "a:F b:F k:K t:U";

std::string filter(const std::string& expression, const std::string& attributes = "") {
  return "<FilterRows name='f' " + attributes + "><Expression>" + expression +
         "</Expression><InputVars><InputVar column='a'/><InputVar column='b'/>"
         "<InputVar column='k'/><InputVar column='t' isNumber='0'/></InputVars></FilterRows>";
}

void expectSameInBatches(const std::string& xml, const Rows& rows) {
  const RunOutcome rowByRow = outcomeOf<FilterRows>(xml, kColumns, rows);
  for (const BatchShape& shape : kBatchShapes) {
    EXPECT_EQ(outcomeOf<FilterRows>(xml, kColumns, rows, shape), rowByRow)
        << xml << " in batches of " << shape.rows << " and " << shape.strayRows
        << " stray ones for each";
  }
}

Rows countedRows(int count) {
  Rows rows;
  for (int i = 0; i < count; ++i) {
    rows.push_back({i, i % 10, i, std::to_string(i)});
  }
  return rows;
}

}  // namespace

TEST(FilterStage, RandomConditionsAreThoseOfSingleRows) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    RandomExpressions random(seed);
    const std::string condition = random.next();
    Rows rows;
    for (int i = 0; i < 1500; ++i) {
      rows.push_back(random.row());
    }
    expectSameInBatches(filter(condition, "castToKey3='0'"), rows);
  }
}

// A text is true where it is not empty, and warned about.
TEST(FilterStage, ConditionsWithTextsAreThoseOfSingleRows) {
  for (unsigned seed = 0; seed < 12; ++seed) {
    RandomExpressions random(seed);
    const std::string condition = seed % 4 == 0 ? random.nextText() : random.nextTextTest();
    Rows rows;
    for (int i = 0; i < 1500; ++i) {
      rows.push_back(random.row());
    }
    expectSameInBatches(filter(condition), rows);
  }
}

// The entry that no row has is no pattern: rows are evaluated one by one in the column program, and
// only those that fail by the row routine.
TEST(FilterStage, AnEntryThatFailsIsNoRowThatFails) {
  Rows rows = countedRows(1500);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i][3] = std::to_string(i % 7);
  }
  for (const char* expression :
       {"regexMatch(&quot;2345&quot;,t)", "t == &quot;3&quot; || regexMatch(t // t,t)",
        "t == &quot;(&quot; ? 1 : regexMatch(t,&quot;[2-4]&quot;)"}) {
    expectSameInBatches(filter(expression), rows);
  }
  rows[700][3] = "[";
  expectSameInBatches(filter("regexMatch(&quot;2345&quot;,t)"), rows);
}

// As numbers and as dates; those that are none are counted at their rows.
TEST(FilterStage, TextsOfADictionaryAreConvertedOnce) {
  Rows rows = countedRows(1500);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i][3] = i % 11 == 0 ? Value(nullptr) : Value("200" + std::to_string(i % 7));
  }
  const std::string number = "<InputVar column='t' label='x'/>";
  const std::string date = "<InputVar column='t' label='x' meta='D'/>";
  for (const char* wrong : {"2003", "none"}) {
    rows[900][3] = wrong;
    for (const std::string& variable : {number, date}) {
      expectSameInBatches(
          "<FilterRows name='f' dateFormat='yyyy'><Expression>x &gt; 2004 || "
          "isNull(x)</Expression><InputVars>" +
              variable + "</InputVars></FilterRows>",
          rows);
    }
  }
}

// Codes that say something else than the texts show which of the two is looked at.
TEST(FilterStage, ConditionsOfOneTextAreDecidedOnEntries) {
  for (const char* expression :
       {"t == &quot;(&quot;", "contains(t,&quot;(&quot;) &amp;&amp; a &gt;= 0",
        "substr(t // &quot;)&quot;,0,2) == &quot;()&quot;"}) {
    auto h = RowHarness::of<FilterRows>(filter(expression), kColumns);
    h.pullInBatches({.rows = 600, .strayRows = 1, .hasDictionaries = true});
    h.push(Rows(500, {1, 2, 3, "same"}));
    ASSERT_TRUE(h.pull(1).has_value());
    const RowBatchPointer batch = h.input(0).restOfBatch();
    std::vector<BatchColumn> columns = batch->columns();
    const std::vector<std::uint16_t> codes(batch->storedRows(), 0);  // of kEntryWithoutRows
    columns[3].setDictionary({codes.data(), columns[3].dictionary().positions});
    const RowBatch misleading(batch->storedRows(), columns, batch->sharedSelection(),
                              batch->rowCount());
    const StageResult result = h.actionAs<FilterRows>().stage()->process(misleading, -1);
    EXPECT_EQ(result.rowsDone, batch->rowCount());
    EXPECT_EQ(result.outputs[1], nullptr) << expression;
  }
}

TEST(FilterStage, TruncatesBehindTheFirstFalseRow) {
  const Rows rows = countedRows(2500);
  for (const char* last : {"0", "1", "6", "7", "999", "1000", "1024", "2499", "9999"}) {
    expectSameInBatches(filter(std::string("a &lt; ") + last, "truncate='1'"), rows);
    expectSameInBatches(filter(std::string("_n+0 &lt; ") + last, "truncate='1'"), rows);
    expectSameInBatches(filter(std::string("atof(t) &lt; ") + last, "truncate='1'"), rows);
  }
}

TEST(FilterStage, ANullKeyStopsAtItsRow) {
  for (const int badRow : {0, 1, 13, 1999}) {
    Rows rows = countedRows(2000);
    rows[static_cast<std::size_t>(badRow)][2] = nullptr;
    for (const char* truncate : {"0", "1"}) {
      expectSameInBatches(
          filter("b &lt; 9", std::string("castToKey3='2' truncate='") + truncate + "'"), rows);
    }
  }
}

TEST(FilterStage, RowsThatNobodyReadsAreCounted) {
  const Rows rows = countedRows(2500);
  for (const std::string& xml : {filter("b &gt; 6"), filter("1"), filter("0"), filter("_n % 2"),
                                 filter("a &lt; 1500", "truncate='1'")}) {
    const std::vector<long long> expected = outcomeOf<FilterRows>(xml, kColumns, rows).published;
    for (const BatchShape& shape : {BatchShape{7}, BatchShape{1000, 1}, BatchShape{3000}}) {
      for (const std::vector<int>& unread : {std::vector{0}, {1}, {0, 1}}) {
        const auto leave = [&unread](RowHarness& h) {
          std::ranges::for_each(unread, [&h](int pin) { h.leaveUnread(pin); });
        };
        EXPECT_EQ(outcomeOf<FilterRows>(xml, kColumns, rows, shape, leave).published, expected)
            << xml << " in batches of " << shape.rows << ", " << unread.size() << " unread";
      }
    }
  }
}

TEST(FilterStage, ColumnsStayAsTheyAre) {
  auto h = RowHarness::of<FilterRows>(filter("b &gt; 4"), kColumns);
  h.pullInBatches({1000, 1});
  h.push(countedRows(500));
  ASSERT_TRUE(h.pull(1).has_value());
  const RowBatchPointer batch = h.input(0).restOfBatch();
  const StageResult result = h.actionAs<FilterRows>().stage()->process(*batch, -1);
  for (const RowBatchPointer& output : result.outputs) {
    ASSERT_NE(output, nullptr);
    for (std::size_t i = 0; i < batch->columnCount(); ++i) {
      EXPECT_EQ(output->column(i).value(0), batch->column(i).value(0));
    }
  }
  EXPECT_EQ(result.outputs[0]->rowCount() + result.outputs[1]->rowCount(), batch->rowCount());
  EXPECT_EQ(result.inputRows[0][0], 4u);
  EXPECT_EQ(result.outputs[0]->storedRow(0), batch->storedRow(4));
}

// What is not made need not be read either, so a filter asks for the texts of its rows only.
TEST(FilterStage, LateTextsAreMadeForRowsThatSomebodyTakes) {
  struct Counted final : LateTexts {
    mutable std::vector<std::size_t> made;
    mutable int compared = 0;

    std::size_t byteCount() const override { return 0; }
    std::shared_ptr<const unsigned char[]> make(const Rows& rows, std::uint32_t* positions,
                                                std::size_t& size) const override {
      made.push_back(rows.count);
      for (std::size_t i = 0; i < rows.count; ++i) {
        positions[rows.selection == nullptr ? i : rows.selection[i]] = 0;
      }
      size = 5;
      return std::shared_ptr<const unsigned char[]>(new unsigned char[5]{1, 0, 0, 0, '7'});
    }
    void compare(std::string_view bytes, bool, std::int8_t, const Rows& rows,
                 std::int8_t* orders) const override {
      ++compared;
      for (std::size_t i = 0; i < rows.count; ++i) {
        orders[i] = static_cast<std::int8_t>(i % 5) - (bytes == "c" ? 2 : 0);
      }
    }
  };
  struct Case {
    const char* condition;
    std::vector<std::size_t> made;
    int compared;
    std::array<std::size_t, 2> rows;
  };
  for (const auto& [condition, made, compared, rows] :
       {Case{"t==&quot;a&quot;", {100, 400}, 1, {100, 400}},
        Case{"&quot;c&quot; &lt;= t &amp;&amp; b &lt; 9", {250, 250}, 1, {250, 250}},
        Case{"contains(t,&quot;7&quot;)", {500}, 0, {500, 0}},
        Case{"contains(t,&quot;7&quot;) &amp;&amp; t &gt; &quot;c&quot;", {500}, 0, {0, 500}},
        Case{"t &gt; &quot;c&quot; || t == &quot;c&quot;", {300, 200}, 2, {300, 200}}}) {
    auto h = RowHarness::of<FilterRows>(filter(condition), kColumns);
    h.pullInBatches({1000, 1});
    h.push(countedRows(501));
    ASSERT_TRUE(h.pull(1).has_value());
    const RowBatchPointer batch = h.input(0).restOfBatch();
    ASSERT_EQ(batch->rowCount(), 500u);
    const auto late = std::make_shared<Counted>();
    std::vector<BatchColumn> columns = batch->columns();
    columns[3] = BatchColumn::ofLateTexts(MetaTypeColumn::text, late, 0, 0);
    const RowBatch given(batch->storedRows(), columns, batch->sharedSelection(), 500);
    const StageResult result = h.actionAs<FilterRows>().stage()->process(given, -1);
    EXPECT_EQ(late->made, made) << condition;
    EXPECT_EQ(late->compared, compared) << condition;
    for (std::size_t pin = 0; pin < 2; ++pin) {
      ASSERT_EQ(result.outputs[pin] == nullptr ? 0 : result.outputs[pin]->rowCount(), rows[pin])
          << condition;
      EXPECT_FALSE(rows[pin] > 0 && result.outputs[pin]->column(3).isLate()) << condition;
    }
  }
}

TEST(FilterStage, TextsAllocateNothingForARow) {
  auto h = RowHarness::of<FilterRows>(
      filter("contains(tolower(t),&quot;rk&quot;) || regexMatch(t,&quot;^[ÜU]r&quot;) || "
             "t // &quot;x&quot; &gt; &quot;M&quot;"),
      kColumns);
  for (int i = 0; i < 3000; ++i) {
    h.push({i, i, i, i % 3 == 0 ? "Newark" : i % 3 == 1 ? "Ürgüp" : "Gent"});
  }
  ASSERT_TRUE(h.pull(0).has_value());
  const BatchStage* stage = h.actionAs<FilterRows>().stage();
  ASSERT_NE(stage, nullptr);
  expectNoAllocationsForRows(*stage, *h.input(0).restOfBatch());
}

TEST(FilterStage, SamplingGoesRowByRow) {
  auto h = RowHarness::of<FilterRows>(filter("_n &lt; 3"), kColumns);
  h.pullInBatches({1000});
  h.push(countedRows(10));
  EXPECT_EQ(h.rows(0).size(), 3u);
  EXPECT_EQ(h.actionAs<FilterRows>().stage(), nullptr);
}

}  // namespace kelvarin::testing
