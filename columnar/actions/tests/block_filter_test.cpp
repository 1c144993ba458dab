// Which blocks the filter passes over.
#include <gtest/gtest.h>

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
  BlockFilterTest() {
    makeFile(kColumns, kRows, {.rowsInBlock = 2}).saveTo(m_folder.path().toStdString());
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
      const auto place = std::find(kRows.begin(), kRows.end(), rows[i]);
      blocks += std::to_string((place - kRows.begin()) / 2);
    }
    return blocks;
  }

 private:
  QTemporaryDir m_folder;
};

TEST_F(BlockFilterTest, PassesOverBlocksByTheirSummaries) {
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
  // The last text is longer than its place, and still not passed over; without texts nothing is
  // known to be smaller.
  EXPECT_EQ(blocks("last &gt; \"" + kLong + "aa\""), "23");
}

TEST_F(BlockFilterTest, RefusesWhatCannotBeUsed) {
  auto column = filtered("x_max", "<CInputVar column='x'/>");
  column.finish();
  EXPECT_EQ(column.log(), Strings{"error: ERROR: column 'x' in expression is missing."});
  // A text is no number, whatever it looks like.
  auto text = filtered("name_max &gt; 1", "<CInputVar column='name'/>");
  text.finish();
  ASSERT_EQ(text.log().size(), 1u);
  EXPECT_TRUE(text.log()[0].starts_with("error: The column 'name' in the block filter holds texts."));
  auto wrong = filtered("id_max +");
  wrong.finish();
  ASSERT_EQ(wrong.log().size(), 1u);
  EXPECT_TRUE(wrong.log()[0].starts_with("error: Columnar Reader Error in the block filter: "));
  auto unknown = filtered("id_mxa &gt; 1");
  unknown.finish();
  ASSERT_EQ(unknown.explanations().size(), 2u);
  EXPECT_NE(unknown.explanations()[0].find("id_mxa > 1\n    ^^^^^^"), std::string::npos);
  EXPECT_NE(unknown.explanations()[1].find("Did you mean id_max or id_min?"), std::string::npos);
  auto format = filtered("day_max &gt; 1", kVariables, "");
  format.finish();
  EXPECT_EQ(format.log(), Strings{"error: Columnar Reader Error: Date format is unknown"});
  EXPECT_TRUE(format.hasFailed());
  auto reference =
      filtered("day_max &gt; 1", kVariables, "dateFormat='yyyy-MM-dd' referenceTime='soon'");
  reference.finish();
  EXPECT_EQ(reference.log(), Strings{"warning: Cannot parse Reference time. We will use "
                                     "1970-01-01T00:00:00.000 as reference time."});
}

}  // namespace

}  // namespace kelvarin::testing
