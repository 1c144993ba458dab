// Which blocks the filter skips.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>

#include <QDate>
#include <QTemporaryDir>

#include "columnar/actions/read_columnar_gel.h"
#include "columnar/reader/tests/made_file.h"
#include "host/testing/row_harness.h"

namespace kelvarin::testing {

namespace {

const std::string kLong(100, 'q');

// Blocks of two rows.
const std::vector<Values> kRows{
    {1, 0.5, "2024-01-01", "apple"},      {4, -2.0, "2024-01-31", "banana"},
    {5, 10.0, "2024-02-01", "cherry"},    {nullptr, nullptr, "2024-02-03", nullptr},
    {nullptr, nullptr, nullptr, nullptr}, {nullptr, nullptr, nullptr, nullptr},
    {90, 7.0, "2024-03-01", kLong + "a"}, {95, 8.0, "2024-03-02", kLong + "b"},
};
const std::vector<MadeColumn> kColumns{{"id", 'K'}, {"price", 'F'}, {"day", 'U'}, {"name", 'U'}};
const std::string kVariables =
    "<CInputVar column='id'/><CInputVar column='price'/>"
    "<CInputVar column='name' isNumber='0' varNameMax='last' varNameMin='first'/>"
    "<CInputVar column='day' meta='D'/>";

const std::string kDates =
    "dateFormat='yyyy-MM-dd' referenceTime='19700101 00:00:00' elapsedTimeUnit='3'";

class BlockFilterTest : public ::testing::Test {
 protected:
  BlockFilterTest() { saveRows(kRows); }

  void saveRows(const std::vector<Values>& rows) const {
    makeFile(kColumns, rows, {.rowsInBlock = 2}).saveTo(m_folder.path().toStdString());
  }

  RowHarness filtered(const std::string& expression, const std::string& variables = kVariables,
                      const std::string& attributes = kDates) {
    return RowHarness::of<ReadColumnarGel>(
        "<ReadColumnarGel filterRows='1' fileName='" + m_folder.path().toStdString() +
        "/made.cgel_kelvarin'><CFilterRows " + attributes + "><Expression>" + expression +
        "</Expression><InputVars>" + variables + "</InputVars></CFilterRows></ReadColumnarGel>");
  }
  // The numbers of the blocks whose rows come.
  std::string blocks(const std::string& expression, const std::string& variables = kVariables) {
    auto h = filtered(expression, variables);
    const Rows rows = h.rows(0);
    EXPECT_EQ(h.log().size(), expression.empty() ? 1u : 0u);  // a warning that nothing is filtered
    std::string blocks;
    for (std::size_t i = 0; i + 1 < rows.size(); i += 2) {
      const auto found = std::find(kRows.begin(), kRows.end(), rows[i]);
      blocks += std::to_string((found - kRows.begin()) / 2);
    }
    return blocks;
  }

 private:
  QTemporaryDir m_folder;
};

TEST_F(BlockFilterTest, SkipsBlocksByTheirStatistics) {
  EXPECT_EQ(blocks("id_max &gt;= 5 &amp;&amp; id_min &lt;= 60"), "1");
  EXPECT_EQ(blocks("price_min &lt; 0"), "0");
  EXPECT_EQ(blocks("price_max &gt; 7.5"), "13");
  EXPECT_EQ(blocks("id_hasNull"), "12");
  EXPECT_EQ(blocks("last &gt;= \"b\" &amp;&amp; first &lt;= \"d\""), "01");
  EXPECT_EQ(blocks("_n_min &gt;= 2 &amp;&amp; _n_max &lt; 6"), "12");
  // Days since 1970; 19754 is the first of February.
  EXPECT_EQ(blocks("day_max &gt;= 19754 &amp;&amp; day_min &lt; 19760"), "1");
  EXPECT_EQ(blocks(""), "0123");
}

TEST_F(BlockFilterTest, ReadsBlocksWithoutAnAnswer) {
  EXPECT_EQ(blocks("_null"), "0123");
  EXPECT_EQ(blocks("id_max * 0 + 1"), "0123");
  EXPECT_EQ(blocks("nvl(id_max, 0)"), "013");
  EXPECT_EQ(blocks("first + 1"), "0123");
  // A name is no date; the block without names has no bound, and is known not to be wanted.
  EXPECT_EQ(blocks("last &gt; 0", "<CInputVar column='name' meta='D' varNameMax='last'/>"), "013");
  // The last text is longer than a bound, and its block is still read. A block without texts has no
  // bounds.
  EXPECT_EQ(blocks("last &gt; \"" + kLong + "aa\""), "23");
}

// Statistics are in the order of the stored values; the expression may see another order.
TEST_F(BlockFilterTest, KeepsBlocksWhoseBoundsHaveAnotherOrder) {
  const std::vector<Values> rows{{9, NAN, "31.01.2024", "b"},
                                 {10, 1.0, "01.02.2024", "a\xC0\x80z"},
                                 {11, 2.0, "02.03.2024", "c"},
                                 {12, 3.0, "03.03.2024", "d"}};
  saveRows(rows);
  const std::string dates =
      "dateFormat='dd.MM.yyyy' referenceTime='19700101 00:00:00' elapsedTimeUnit='3'";
  const auto rowsOf = [&](const std::string& expression, const std::string& variable) {
    auto h = filtered(expression, variable, dates);
    const std::size_t count = h.rows(0).size();
    EXPECT_EQ(h.log(), Strings{});
    return count;
  };
  EXPECT_EQ(rowsOf("day_max &lt; 19755", "<CInputVar column='day' meta='D'/>"), 4u);
  EXPECT_EQ(rowsOf("id_max &gt;= \"9\"", "<CInputVar column='id' isNumber='0'/>"), 4u);
  EXPECT_EQ(rowsOf("price_max &gt; 2.5", "<CInputVar column='price'/>"), 4u) << "one is NaN";
  EXPECT_EQ(rowsOf("name_min &gt; \"zz\"", "<CInputVar column='name' isNumber='0'/>"), 2u);
  EXPECT_EQ(rowsOf("id_max &gt; 11", "<CInputVar column='id'/>"), 2u);
}

// Where a row passes a comparison, its block must be read.
TEST_F(BlockFilterTest, LosesNoRowThatAFullScanFinds) {
  std::mt19937 random(7);
  const char* const days[] = {"2024-01-31", "2023-12-05", "2024-11-01", "", "soon", "2024-02-29"};
  const char* const names[] = {"a",  "B",       "", "\xC3\xA9", "\xF0\x9F\x98\x80", "\xEF\xBC\xA1",
                               "zz", "\xC0\x80"};
  for (int round = 0; round < 40; ++round) {
    std::vector<Values> rows;
    for (int i = 0; i < 16; ++i) {
      const auto pick = [&](const auto& list) { return list[random() % std::size(list)]; };
      const bool isMissing = random() % 8 == 0;
      const double prices[] = {-0.0, 0.0, NAN, -3.5, 1e300, double(random() % 9)};
      rows.push_back({isMissing ? Value(nullptr) : Value(int(random() % 30)), Value(pick(prices)),
                      Value(pick(days)), Value(pick(names))});
    }
    saveRows(rows);
    const int limit = int(random() % 30);
    const int day = 19700 + int(random() % 400);
    const std::string name = names[random() % 3];
    const auto number = [](const Value& value) {
      return value.number() != nullptr ? *value.number() : NAN;
    };
    const auto dayOf = [](const Value& value) {
      const QDate date = QDate::fromString(QString::fromStdString(*value.text()), Qt::ISODate);
      return date.isValid() ? double(QDate(1970, 1, 1).daysTo(date)) : NAN;
    };
    struct Case {
      std::string ofBlock;
      std::string variable;
      std::function<bool(const Values&)> ofRow;
    };
    const std::string idVariable = "<CInputVar column='id'/>";
    const std::string priceVariable = "<CInputVar column='price'/>";
    const std::string dayVariable = "<CInputVar column='day' meta='D'/>";
    const std::string nameVariable = "<CInputVar column='name' isNumber='0'/>";
    const Case cases[] = {{"id_max &gt;= " + std::to_string(limit), idVariable,
                           [&](const Values& row) { return number(row[0]) >= limit; }},
                          {"id_min &lt; " + std::to_string(limit), idVariable,
                           [&](const Values& row) { return number(row[0]) < limit; }},
                          {"price_max &gt;= 0", priceVariable,
                           [&](const Values& row) { return number(row[1]) >= 0; }},
                          {"price_min &lt;= 2", priceVariable,
                           [&](const Values& row) { return !(number(row[1]) > 2); }},
                          {"day_max &gt;= " + std::to_string(day), dayVariable,
                           [&](const Values& row) { return dayOf(row[2]) >= day; }},
                          {"day_min &lt; " + std::to_string(day), dayVariable,
                           [&](const Values& row) { return dayOf(row[2]) < day; }},
                          {"name_max &gt;= \"" + name + "\"", nameVariable,
                           [&](const Values& row) { return *row[3].text() >= name; }},
                          {"name_min &lt; \"" + name + "\"", nameVariable,
                           [&](const Values& row) { return *row[3].text() < name; }}};
    for (const Case& one : cases) {
      const Rows kept = filtered(one.ofBlock, one.variable).rows(0);
      for (const Values& row : rows) {
        const bool isKept = std::find(kept.begin(), kept.end(), row) != kept.end();
        EXPECT_TRUE(isKept || !one.ofRow(row))
            << one.ofBlock << ' ' << ::testing::PrintToString(row);
      }
    }
  }
}

TEST_F(BlockFilterTest, RefusesWhatCannotBeUsed) {
  const auto lineOf = [](RowHarness&& h) {
    h.finish();
    EXPECT_EQ(h.log().size(), 1u);
    return h.log().at(0);
  };
  EXPECT_EQ(lineOf(filtered("x_max", "<CInputVar column='x'/>")),
            "error: ERROR: column 'x' in expression is missing.");
  // A text is no number, whatever it looks like.
  EXPECT_TRUE(lineOf(filtered("name_max &gt; 1", "<CInputVar column='name'/>"))
                  .starts_with("error: The column 'name' in the block filter holds texts."));
  EXPECT_TRUE(lineOf(filtered("id_max +"))
                  .starts_with("error: Columnar Reader Error in the block filter: "));
  auto unknown = filtered("id_mxa &gt; 1");
  unknown.finish();
  ASSERT_EQ(unknown.explanations().size(), 2u);
  EXPECT_NE(unknown.explanations()[0].find("id_mxa > 1\n    ^^^^^^"), std::string::npos);
  EXPECT_NE(unknown.explanations()[1].find("Did you mean id_max or id_min?"), std::string::npos);
  auto format = filtered("day_max &gt; 1", kVariables, "");
  format.finish();
  EXPECT_EQ(format.log(), Strings{"error: Columnar Reader Error: Date format is unknown"});
  EXPECT_TRUE(format.hasFailed());
  EXPECT_EQ(lineOf(filtered("day_max &gt; 1", kVariables,
                            "dateFormat='yyyy-MM-dd' referenceTime='soon'")),
            "warning: Cannot parse Reference time. We will use 1970-01-01T00:00:00.000 as "
            "reference time.");
}

}  // namespace

}  // namespace kelvarin::testing
