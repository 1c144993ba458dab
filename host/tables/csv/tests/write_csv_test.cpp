#include "host/tables/csv/write_csv.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <limits>
#include <thread>

#include <gtest/gtest.h>

#include "host/tables/csv/read_csv.h"
#include "host/tables/files/tests/table_folder.h"
#include "host/testing/full_disk.h"
#include "host/testing/row_harness.h"

namespace kelvarin {

using testing::FullDisk;
using testing::RowHarness;
using testing::Rows;
using testing::Strings;
using testing::TableFolder;

namespace {

std::string sinkXml(const std::string& file, const std::string& attributes = {}) {
  return "<WriteCSV name='w' file='" + file + "' " + attributes + "/>";
}

// The file that these rows become.
std::string written(const Rows& rows, const std::string& columns,
                    const std::string& attributes = {}) {
  const TableFolder folder;
  auto sink = RowHarness::of<WriteCsv>(sinkXml(folder.path("out.csv"), attributes), columns);
  sink.push(rows);
  sink.finish();
  EXPECT_EQ(sink.log(), Strings{});
  EXPECT_EQ(folder.listing(), "out.csv");
  return folder.read("out.csv");
}

}  // namespace

TEST(WriteCsv, numbersInTheirShortestForm) {
  const Rows rows{{1},
                  {-0.0},
                  {0.1},
                  {1e15},
                  {123456789012345680.0},
                  {1e300},
                  {5e-324},
                  {-1.5e-7},
                  {9007199254740993.0},
                  {std::nan("")},
                  {-kInfinity},
                  {kInfinity},
                  {nullptr}};
  EXPECT_EQ(written(rows, "a:F", "header='0'"),
            "1\n-0\n0.1\n1000000000000000\n1.2345678901234568e+17\n1e+300\n5e-324\n-1.5e-07\n"
            "9007199254740992\nnan\n-inf\ninf\n\n");
  EXPECT_EQ(written({{7, 4294967293u}, {1, nullptr}}, "a:F k:K"), "a,k\n7,4294967293\n1,\n");
}

TEST(WriteCsv, quotesOnlyWhatNeedsIt) {
  EXPECT_EQ(
      written({{"plain text", "a,b", "q\"q", "l\nl", "c\rc"}, {"", nullptr, " ", "\"", ";"}},
              "a:U b:U c:U d:U e,f:U"),
      "a,b,c,d,\"e,f\"\nplain text,\"a,b\",\"q\"\"q\",\"l\nl\",\"c\rc\"\n\"\",, ,\"\"\"\",;\n");
  EXPECT_EQ(written({{"NA", "", 5}, {nullptr, "N", nullptr}}, "a:U b:U c:F", "nullText='NA'"),
            "a,b,c\n\"NA\",,5\nNA,N,NA\n");
  EXPECT_EQ(written({{0}, {1}, {nullptr}}, "a:F", "nullText='0'"), "a\n\"0\"\n1\n0\n");
  EXPECT_EQ(written({{1.5}, {2}}, "a:F", "separator='.'"), "a\n\"1.5\"\n2\n");
  EXPECT_EQ(written({{"x;y", "'"}}, "a:U b:U", "separator='\\t' quote=\"'\""), "a\tb\nx;y\t''''\n");
  EXPECT_EQ(written({{""}, {nullptr}}, "a:U", "nullText='NA'"), "a\n\"\"\nNA\n");
}

TEST(WriteCsv, withoutRowsThereIsTheHeader) {
  EXPECT_EQ(written({}, "a:F b:U"), "a,b\n");
  EXPECT_EQ(written({}, "a:F b:U", "header='0'"), "");
}

TEST(WriteCsv, whatItWritesReadsBackAndIsWrittenTheSame) {
  const Rows rows{{1.25, "x,y", 5},
                  {nullptr, "", nullptr},
                  {std::nan(""), nullptr, 0},
                  {-kInfinity, "\r\n\"", 7}};
  for (const char* attributes : {"", "nullText='5'", "separator=';' quote=\"'\"", "header='0'"}) {
    const TableFolder folder;
    const std::string first =
        folder.write("1.csv", written(rows, "col1:F col2:U col3:K", attributes));
    auto source = RowHarness::of<ReadCsv>("<ReadCSV name='r' file='" + first + "' " + attributes +
                                          "><Column name='col3' meta='K'/></ReadCSV>");
    const Rows read = source.rows(0);
    EXPECT_EQ(read, rows) << attributes;
    EXPECT_EQ(written(read, source.columns(0), attributes), folder.read("1.csv"));
  }
}

TEST(WriteCsv, aFieldThatNeedsAQuoteWhereThereIsNone) {
  const TableFolder folder;
  folder.write("out.csv", "old");
  auto sink = RowHarness::of<WriteCsv>(sinkXml(folder.path("out.csv"), "quote=''"), "a:U b:U");
  sink.push(Rows{{"fine", "x"}, {"y", "1,5"}});
  sink.finish();
  EXPECT_TRUE(sink.hasFailed());
  EXPECT_NE(sink.log().at(0).find("row 2, column 'b': '1,5'"), std::string::npos) << sink.log()[0];
  EXPECT_EQ(folder.read("out.csv"), "old");
  EXPECT_EQ(folder.listing(), "out.csv");

  // The rows before are written where they can be seen.
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  const int pipe = ::open(folder.path("pipe").c_str(), O_RDWR | O_CLOEXEC);
  auto stream = RowHarness::of<WriteCsv>(sinkXml(folder.path("pipe"), "quote=''"), "a:U");
  stream.input(0).setBatchShape({.rows = 2});
  stream.push(Rows{{"1"}, {"2"}, {"3"}, {","}, {"5"}});
  stream.finish();
  EXPECT_NE(stream.log().at(0).find("row 4, column 'a': ','"), std::string::npos);
  char text[16] = {};
  EXPECT_EQ(::read(pipe, text, sizeof text), 8);
  EXPECT_STREQ(text, "a\n1\n2\n3\n");
  ::close(pipe);
}

// Texts of every length, with a byte that needs quotes at every position or none, in batches that
// end anywhere and have rows that do not count.
TEST(WriteCsv, batchesOfAnyShapeMakeTheSameFile) {
  Rows rows;
  std::string expected = "a,b,c\n";
  for (std::size_t size = 0; size <= 40; ++size) {
    for (std::size_t at = 0; at <= size; ++at) {
      std::string text(size, 'x');
      const bool needsQuote = at < size || size == 0;  // an empty text is not null
      if (at < size) {
        text[at] = ",\n\r\""[at % 4];
      }
      rows.push_back({1.5, text, static_cast<unsigned>(at)});
      if (at < size && at % 4 == 3) {
        text.insert(at, 1, '"');
      }
      expected += "1.5," + (needsQuote ? '"' + text + '"' : text) + ',' + std::to_string(at) + '\n';
    }
  }
  for (const std::size_t size : {1u, 2u, 7u, 4096u}) {
    for (const std::size_t strayRows : {0u, 1u}) {
      const TableFolder folder;
      auto sink = RowHarness::of<WriteCsv>(sinkXml(folder.path("out.csv")), "a:F b:U c:K");
      sink.input(0).setBatchShape({.rows = size, .strayRows = strayRows});
      sink.push(rows);
      sink.finish();
      EXPECT_TRUE(folder.read("out.csv") == expected) << size << ' ' << strayRows;
    }
  }
}

TEST(WriteCsv, theFileAppearsAtANormalEndOnly) {
  const TableFolder folder;
  folder.write("out.csv", "old");
  ::chmod(folder.path("out.csv").c_str(), 0640);
  for (const auto end :
       {GlobalParameters::RunningState::failed, GlobalParameters::RunningState::stoppedByUser}) {
    auto sink = RowHarness::of<WriteCsv>(sinkXml(folder.path("out.csv")), "a:F");
    sink.pushRepeated({1}, 300000);
    sink.runWithoutReading(20);  // of more batches
    sink.run().status = end;
    sink.close();
    EXPECT_EQ(folder.read("out.csv"), "old");
    EXPECT_EQ(folder.listing(), "out.csv");
  }
  auto sink = RowHarness::of<WriteCsv>(sinkXml(folder.path("out.csv")), "a:F");
  sink.push(Rows{{1}});
  sink.finish();
  EXPECT_EQ(folder.read("out.csv"), "a\n1\n");
  struct stat info{};
  ASSERT_EQ(::stat(folder.path("out.csv").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0640u);
}

TEST(WriteCsv, aLinkStaysALink) {
  const TableFolder folder;
  folder.write("real.csv", "old");
  ASSERT_EQ(::symlink("real.csv", folder.path("link.csv").c_str()), 0);
  auto sink = RowHarness::of<WriteCsv>(sinkXml(folder.path("link.csv")), "a:F");
  sink.finish();
  EXPECT_EQ(folder.read("real.csv"), "a\n");
  EXPECT_EQ(folder.listing(), "link.csv real.csv");
}

TEST(WriteCsv, aFolderThatCannotBeWrittenIsFoundAtTheStart) {
  const TableFolder folder;
  for (const std::string& path : {folder.path("no/out.csv"), folder.path("")}) {
    auto sink = RowHarness::of<WriteCsv>(sinkXml(path), "a:F");
    sink.push(Rows{{1}});
    EXPECT_EQ(sink.init(), 1);
    EXPECT_NE(sink.log().at(0).find("cannot be created"), std::string::npos);
    EXPECT_EQ(sink.input(0).rowsPulled(), 0);
  }
  auto check = RowHarness::of<WriteCsv>(sinkXml(folder.path("out.csv")), "a:F");
  check.checkOnly();
  EXPECT_EQ(check.init(), 0);
  EXPECT_EQ(folder.listing(), "");
}

TEST(WriteCsv, aFullDiskIsTriedAgainAsLongAsTheHostSays) {
  const TableFolder folder;
  const std::string path = folder.path("out.csv");
  {
    FullDisk disk(300000);
    auto sink = RowHarness::of<WriteCsv>(sinkXml(path), "a:F");
    sink.host().retryFullDisk(2);
    sink.pushRepeated({123456}, 200000);
    sink.finish();
    EXPECT_TRUE(sink.hasFailed());
    EXPECT_EQ(sink.host().fullDiskFiles(), Strings(3, path));
    EXPECT_EQ(folder.listing(), "");
  }
  FullDisk disk(300000);
  std::thread cleaner([&disk] {
    while (disk.refusals() == 0) {
      std::this_thread::yield();
    }
    disk.freeBytes(1 << 30);
  });
  auto sink = RowHarness::of<WriteCsv>(sinkXml(path), "a:F");
  sink.host().retryFullDisk(std::numeric_limits<int>::max());
  sink.pushRepeated({123456}, 200000);
  sink.finish();
  cleaner.join();
  EXPECT_FALSE(sink.hasFailed());
  EXPECT_EQ(folder.read("out.csv").size(), 2 + 200000 * 7u);
}

TEST(WriteCsv, devicesAreWrittenDirectly) {
  auto none = RowHarness::of<WriteCsv>(sinkXml("/dev/null"), "a:F");
  none.push(Rows{{1}});
  none.finish();
  struct stat info{};
  ASSERT_EQ(::stat("/dev/null", &info), 0);
  EXPECT_TRUE(S_ISCHR(info.st_mode));
  auto full = RowHarness::of<WriteCsv>(sinkXml("/dev/full"), "a:F");
  full.push(Rows{{1}});
  full.finish();
  EXPECT_TRUE(full.hasFailed());
  EXPECT_EQ(full.host().fullDiskFiles(), Strings{});  // no space could be made there
}

TEST(WriteCsv, standardOutputMayBeClosedByItsReader) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const int saved = ::dup(STDOUT_FILENO);
  ::dup2(ends[1], STDOUT_FILENO);
  auto sink = RowHarness::of<WriteCsv>(sinkXml("-"), "a:F");
  sink.push(Rows{{1}});
  sink.finish();
  char text[16] = {};
  EXPECT_EQ(::read(ends[0], text, sizeof text), 4);
  EXPECT_STREQ(text, "a\n1\n");
  ::close(ends[0]);
  auto unread = RowHarness::of<WriteCsv>(sinkXml("-"), "a:F");
  unread.push(Rows{{1}});
  unread.finish();
  ::dup2(saved, STDOUT_FILENO);
  ::close(saved);
  ::close(ends[1]);
  EXPECT_FALSE(unread.hasFailed());
  EXPECT_EQ(unread.log(), Strings{});
}

TEST(WriteCsv, savesWhatDiffersFromTheDefaults) {
  const std::string plain = "<WriteCSV name='w' version='1' file='a.csv'/>\n";
  EXPECT_EQ(RowHarness::of<WriteCsv>(plain).saved(), plain);
}

}  // namespace kelvarin
