// Tables that a sink splits into a file for each value of a column, shown with CSV files.
#include <gtest/gtest.h>

#include "host/tables/csv/write_csv.h"
#include "host/tables/files/tests/table_folder.h"
#include "host/testing/row_harness.h"

namespace kelvarin {

using testing::RowHarness;
using testing::Rows;
using testing::Strings;
using testing::TableFolder;

namespace {

std::string sinkXml(const std::string& file, const std::string& attributes = {}) {
  return "<WriteCSV name='w' file='" + file + "' split='2' splitVar='v' " + attributes + "/>";
}

void declareSorted(RowHarness& sink) {
  sink.input(0).setSortOrder({SortInfos(0, SortType::textAscending)});
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST(SplitCsv, AFileForEachValueWhateverTheBatches) {
  for (const std::size_t rows : {1u, 2u, 3u, 100u}) {
    const TableFolder folder;
    auto sink = RowHarness::of<WriteCsv>(sinkXml(folder.path("t.csv")), "v:U n:F");
    sink.input(0).setBatchShape({.rows = rows});
    sink.push(Rows{{"a", 1}, {"b/c", 2}, {nullptr, 3}, {"a", 4}, {".x", 5}, {"", 6}, {nullptr, 7}});
    sink.finish();
    ASSERT_EQ(sink.log().size(), 1u);
    EXPECT_TRUE(contains(sink.log()[0], "info: WriteCSV: the table is not sorted on 'v'"));
    EXPECT_EQ(folder.listing(), "t.csv t_null.csv t_x.csv ta.csv tb_c.csv");
    EXPECT_EQ(folder.read("ta.csv"), "v,n\na,1\na,4\n");
    EXPECT_EQ(folder.read("tb_c.csv"), "v,n\nb/c,2\n");
    EXPECT_EQ(folder.read("t_null.csv"), "v,n\n,3\n,7\n");
    EXPECT_EQ(folder.read("t.csv"), "v,n\n\"\",6\n");
  }
}

TEST(SplitCsv, NumbersAreOneValueIfTheyAreEqual) {
  const TableFolder folder;
  auto sink = RowHarness::of<WriteCsv>(sinkXml(folder.path("t_.csv")), "v:F");
  sink.push(Rows{{0.0}, {-0.0}, {std::nan("")}, {-std::nan("")}, {1.5}, {nullptr}});
  sink.finish();
  EXPECT_EQ(folder.listing(), "t_0.csv t_1.5.csv t__null.csv t_nan.csv");
  EXPECT_EQ(folder.read("t_0.csv"), "v\n0\n-0\n");
}

TEST(SplitCsv, ASortedTableHasOneFileOpenAtATime) {
  const TableFolder folder;
  folder.write("tb.csv", "old");
  auto sink = RowHarness::of<WriteCsv>(sinkXml(folder.path("t.csv")), "v:U n:F");
  declareSorted(sink);
  sink.input(0).setBatchShape({.rows = 2});
  sink.push(Rows{{"a", 1}, {"a", 2}, {"a", 3}, {"b", 4}, {"c", 5}});
  sink.finish();
  EXPECT_EQ(sink.log(), Strings{});
  EXPECT_EQ(folder.listing(), "ta.csv tb.csv tc.csv");
  EXPECT_EQ(folder.read("ta.csv"), "v,n\na,1\na,2\na,3\n");
  EXPECT_EQ(folder.read("tb.csv"), "v,n\nb,4\n");
}

// Nothing of a run that fails is left, neither of files that were finished nor of those at work.
TEST(SplitCsv, ARunThatFailsLeavesNothing) {
  for (const std::size_t rows : {1u, 100u}) {
    const TableFolder folder;
    folder.write("ta.csv", "old");
    auto sink = RowHarness::of<WriteCsv>(sinkXml(folder.path("t.csv")), "v:U");
    declareSorted(sink);
    sink.input(0).setBatchShape({.rows = rows});
    sink.push(Rows{{"a"}, {"b"}, {"a"}});
    sink.finish();
    EXPECT_TRUE(sink.hasFailed());
    EXPECT_TRUE(contains(sink.log().back(), "the value 'a' of the split column comes back"));
    EXPECT_EQ(folder.listing(), "ta.csv");
    EXPECT_EQ(folder.read("ta.csv"), "old");
  }
  const TableFolder folder;
  auto meeting = RowHarness::of<WriteCsv>(sinkXml(folder.path("t.csv")), "v:U");
  meeting.push(Rows{{"a/b"}, {"a\\b"}});
  meeting.finish();
  EXPECT_TRUE(contains(meeting.log().back(), "'a/b' and 'a\\b', give this same file name"));
  EXPECT_EQ(folder.listing(), "");
}

TEST(SplitCsv, SettingsThatCannotBe) {
  const TableFolder folder;
  const auto log = [&](const std::string& attributes) {
    auto sink = RowHarness::of<WriteCsv>("<WriteCSV name='w' " + attributes + "/>", "value:U");
    sink.push(Rows{{"a"}});
    sink.finish();
    EXPECT_TRUE(sink.hasFailed());
    return sink.log().empty() ? std::string() : sink.log().back();
  };
  const std::string file = "file='" + folder.path("t.csv") + "' ";
  EXPECT_TRUE(contains(log(file + "split='2' splitVar='valu'"), "'value'"));
  EXPECT_TRUE(contains(log(file + "split='2'"), "splitVar"));
  EXPECT_TRUE(contains(log(file + "split='1'"), "split is '1'"));
  EXPECT_TRUE(contains(log("file='-' split='2' splitVar='value'"), "standard output cannot be"));
  EXPECT_EQ(folder.listing(), "");
}

TEST(CreateDir, MakesTheFoldersOfTheFile) {
  const TableFolder folder;
  const auto run = [&](const std::string& xml) {
    auto sink = RowHarness::of<WriteCsv>(xml, "v:U");
    sink.push(Rows{{"a"}});
    sink.finish();
    return sink.hasFailed() ? sink.log().back() : std::string();
  };
  const std::string name = folder.path("x/y/t.csv");
  EXPECT_TRUE(contains(run("<WriteCSV name='w' file='" + name + "'/>"), "cannot be created"));
  EXPECT_EQ(run("<WriteCSV name='w' file='" + name + "' createDir='1'/>"), "");
  EXPECT_EQ(folder.read("x/y/t.csv"), "v\na\n");
  EXPECT_EQ(run(sinkXml(folder.path("z/t.csv"), "createDir='1'")), "");
  EXPECT_EQ(folder.read("z/ta.csv"), "v\na\n");
  folder.write("file", "");
  EXPECT_TRUE(
      contains(run("<WriteCSV name='w' file='" + folder.path("file/t.csv") + "' createDir='1'/>"),
               "is no folder"));
}

}  // namespace kelvarin
