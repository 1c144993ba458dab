// Tables written in graph files: their values, their faults with positions, and their saved form.
#include <gtest/gtest.h>

#include "host/tables/inline/discard.h"
#include "host/tables/inline/inline_table.h"
#include "host/testing/row_harness.h"

namespace kelvarin::testing {
namespace {

constexpr const char* kTable =
    "<InlineTable name='t' version='1' sortedOn='k 0, t A'>\n"
    "  <Column name='k' meta='K'/>\n"
    "  <Column name='n' meta='F'/>\n"
    "  <Column name='t'/>\n"
    "  <Row><V null='1'/><V>1.5</V><V>a &lt; &amp; b</V></Row>\n"
    "  <Row><V>1</V><V> -Inf </V><V null='1'/></Row>\n"
    "  <Row><V>1</V><V></V><V></V></Row>\n"
    "  <Row><V>4294967293</V><V>+1e-3</V><V> x </V></Row>\n"
    "</InlineTable>\n";

TEST(InlineTable, GivesItsRowsWithTypesAndOrder) {
  auto h = RowHarness::of<InlineTable>(kTable);
  EXPECT_EQ(h.rows(0), (Rows{{nullptr, 1.5, "a < & b"},
                             {1, -kInfinity, nullptr},
                             {1, nullptr, ""},
                             {4294967293.0, 0.001, " x "}}));
  EXPECT_EQ(h.columns(0), "k:K n:F t:U");
  EXPECT_EQ(h.sortOrder(0),
            (QVector<SortInfos>{{0, SortType::numberAscending}, {2, SortType::textAscending}}));
  EXPECT_EQ(h.log(), Strings{});
}

TEST(InlineTable, AnnouncesItsColumnsWithoutRows) {
  auto empty =
      RowHarness::of<InlineTable>("<InlineTable name='t'><Column name='a'/></InlineTable>");
  EXPECT_EQ(empty.rows(0), Rows{});
  EXPECT_EQ(empty.columns(0), "a:U");
  auto checked = RowHarness::of<InlineTable>(kTable);
  checked.checkOnly();
  EXPECT_EQ(checked.rows(0), Rows{});
  EXPECT_EQ(checked.columns(0), "k:K n:F t:U");
}

// What is done for a column does not depend on how many there are: otherwise this takes minutes.
TEST(InlineTable, TakesManyColumns) {
  constexpr int kColumns = 20000;
  std::string columns;
  std::string values;
  for (int i = 0; i < kColumns; ++i) {
    columns += "<Column name='c" + std::to_string(i) + "' meta='F'/>";
    values += "<V>" + std::to_string(i) + "</V>";
  }
  auto h = RowHarness::of<InlineTable>("<InlineTable name='t'>" + columns + "<Row>" + values +
                                       "</Row></InlineTable>");
  const Rows rows = h.rows(0);
  ASSERT_EQ(rows.size(), 1u);
  ASSERT_EQ(rows[0].size(), static_cast<std::size_t>(kColumns));
  EXPECT_EQ(rows[0].back(), Value(kColumns - 1.0));
}

TEST(InlineTable, SavesWhatItReads) {
  auto h = RowHarness::of<InlineTable>(kTable);
  EXPECT_EQ(h.saved(), kTable);
}

Strings faultsOf(const std::string& xml) {
  auto h = RowHarness::of<InlineTable>(xml);
  EXPECT_NE(h.init(), 0);
  return h.log();
}

TEST(InlineTable, ReportsThePositionOfEveryFault) {
  EXPECT_EQ(
      faultsOf(
          "<InlineTable name='t'>\n<Column name='k' meta='K'/><Column name='n' meta='F'/>\n"
          "<Row><V>-1</V><V>x</V></Row>\n<Row><V>4294967294</V><V>1,5</V></Row>\n</InlineTable>"),
      (Strings{"error: 3:6: '-1' is not a key, as the column 'k' wants: a key is a whole number "
               "from 0 to 4294967293.",
               "error: 3:15: 'x' is not a number, as the column 'n' wants.",
               "error: 4:6: '4294967294' is not a key, as the column 'k' wants: a key is a whole "
               "number from 0 to "
               "4294967293.",
               "error: 4:23: '1,5' is not a number, as the column 'n' wants."}));
  EXPECT_EQ(faultsOf("<InlineTable name='t'>\n<Column "
                     "name='a'/>\n\n<Row><V/><V/></Row>\n<Row/></InlineTable>"),
            (Strings{"error: 4:1: the row has 2 values, and the table 1 columns.",
                     "error: 5:1: the row has 0 values, and the table 1 columns."}));
  EXPECT_EQ(
      faultsOf("<InlineTable name='t'><Column name='a'/>\n<Column name='a'/>\n<Column/>\n<Column "
               "name='b' meta='X'/>"
               "</InlineTable>"),
      (Strings{"error: 2:1: the table has the column 'a' twice.",
               "error: 3:1: <Column> needs the attribute 'name'.",
               "error: 4:1: the column 'b' has meta='X'; it is F (number), K (key) or U (text)."}));
  EXPECT_EQ(faultsOf("<InlineTable name='t' sortedOn='a Z'><Column "
                     "name='a'/><Row><V>1</V></Row>\n<Row><V>2</V></Row></InlineTable>"),
            (Strings{"error: 2:1: the row is out of order in column 'a', which sortedOn declares "
                     "descending. Sort the "
                     "table, or take the column out of sortedOn."}));
}

TEST(Discard, TakesEveryRow) {
  auto h = RowHarness::of<Discard>("<Discard name='d'/>", "a:F");
  h.push({1});
  h.push({nullptr});
  EXPECT_EQ(h.runWithoutReading(), 0);
  EXPECT_FALSE(h.hasFailed());
  EXPECT_EQ(h.saved(), "<Discard name='d' version='1'/>\n");
}

}  // namespace
}  // namespace kelvarin::testing
