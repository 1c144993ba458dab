#include "columnar/actions/write_columnar_gel.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "base/byte_cursor.h"
#include "base/file_lock.h"
#include "columnar/actions/split_names.h"
#include "host/files/split_values.h"
#include "host/testing/full_disk.h"
#include "host/testing/row_harness.h"

namespace kelvarin {

namespace {

using testing::RowHarness;
using testing::Rows;
using testing::Strings;
using testing::Values;

// The content begins like that of a main file.
const std::string kOld("\x40\xF4\x59\0 old", 8);
const Rows kThreeRows = {{1, "a"}, {2, "b"}, {3, "a"}};

class WriteColumnarGelTest : public ::testing::Test {
 protected:
  std::string path(const std::string& name) const {
    return m_folder.filePath(QString::fromStdString(name)).toStdString();
  }
  RowHarness harness(const std::string& attributes, const std::string& columns = "k:K t:U") const {
    return RowHarness::of<WriteColumnarGel>(
        "<writeColumnarGel name='w' file='" + path("x.cgel_kelvarin") + "' " + attributes + "/>",
        columns);
  }
  // The log of a run that writes these rows. It has an error exactly when the run fails.
  Strings write(const std::string& attributes, const Rows& rows = kThreeRows,
                const std::string& columns = "k:K t:U") const {
    return logOf(harness(attributes, columns), rows);
  }
  static Strings logOf(RowHarness&& h, const Rows& rows = kThreeRows) {
    h.push(rows);
    h.finish();
    const Strings log = h.log();
    EXPECT_EQ(h.hasFailed(), std::any_of(log.begin(), log.end(), [](const std::string& line) {
                return line.starts_with("error: ");
              }));
    return log;
  }
  static bool contains(const std::string& line, const char* text) {
    return line.find(text) != std::string::npos;
  }
  void put(const std::string& name, const std::string& content = kOld) const {
    std::ofstream(path(name)) << content;
  }
  Strings files() const { return filesWith(QDir::Files); }
  Strings allFiles() const { return filesWith(QDir::Files | QDir::Hidden | QDir::System); }
  Strings filesWith(QDir::Filters filters) const {
    Strings names;
    for (const QString& name : QDir(m_folder.path()).entryList(filters, QDir::Name)) {
      names.push_back(name.toStdString());
    }
    return names;
  }
  std::string content(const std::string& name) const {
    std::ifstream stream(path(name), std::ios::binary);
    std::ostringstream out;
    out << stream.rdbuf();
    return out.str();
  }
  // -1: the file is not complete.
  long long rowsOf(const std::string& name) const {
    const std::string bytes = content(name);
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    return bytes.size() < 29 || data[4] != 1
               ? -1
               : static_cast<long long>(loadPacked<std::uint64_t>(data + 9));
  }

  QTemporaryDir m_folder;
};

}  // namespace

TEST_F(WriteColumnarGelTest, OneFileReplacesTheOldOneAndItsSideFiles) {
  for (const char* name : {"x.cgel_kelvarin", "x.000.cs_kelvarin", "x.007.cs_kelvarin",
                           "x.abc.cs_kelvarin", "xx.001.cs_kelvarin"}) {
    put(name);
  }
  EXPECT_EQ(write(""), Strings{});
  EXPECT_EQ(files(), (Strings{"x.000.cs_kelvarin", "x.abc.cs_kelvarin", "x.cgel_kelvarin",
                              "xx.001.cs_kelvarin"}));
  EXPECT_EQ(rowsOf("x.cgel_kelvarin"), 3);
}

TEST_F(WriteColumnarGelTest, AnEmptyInputTouchesNothingUnlessAlwaysDeleteIsSet) {
  put("x.cgel_kelvarin");
  put("x.000.cs_kelvarin");
  const Strings log = write("createDir='1'", {});
  EXPECT_EQ(content("x.cgel_kelvarin"), kOld);
  ASSERT_EQ(log.size(), 1u);
  EXPECT_TRUE(contains(log[0], "of an earlier run stays as it is"));
  EXPECT_EQ(write("alwaysDelete='1'", {}), Strings{});
  EXPECT_EQ(files(), Strings{});
  put("x.cgel_kelvarin");
  write("alwaysDelete='1' writeAllRows='0' testCol='t' testValue='no'");
  EXPECT_EQ(files(), Strings{});
}

TEST_F(WriteColumnarGelTest, AnInputThatFailsBeforeItsFirstRowDeletesNothing) {
  put("x.cgel_kelvarin");
  auto h = harness("alwaysDelete='1'");
  h.run().fail();
  h.finish();
  EXPECT_EQ(content("x.cgel_kelvarin"), kOld);
}

TEST_F(WriteColumnarGelTest, ATableBeyondTheLimitsLeavesTheOldFileAlone) {
  const auto refused = [&](const std::string& attributes, const std::string& set, int columns) {
    put("x.cgel_kelvarin");
    put("x.000.cs_kelvarin");
    std::string names;
    for (int i = 0; i < columns; ++i) {
      names += "c" + std::to_string(i) + ":K ";
    }
    const Strings log = logOf(
        RowHarness::of<WriteColumnarGel>(
            "<writeColumnarGel name='w' file='" + path("x.cgel_kelvarin") + "' " + attributes +
                "><ColumnStrategy><C n='c0' s='" + set + "'/></ColumnStrategy></writeColumnarGel>",
            names),
        {Values(static_cast<std::size_t>(columns), 1)});
    EXPECT_EQ(content("x.cgel_kelvarin"), kOld);
    EXPECT_EQ(content("x.000.cs_kelvarin"), kOld);
    EXPECT_EQ(files().size(), 2u);
    return log;
  };
  const Strings tooLarge = {
      "error: columnarWrite ERROR: decrease number of columns or blocksize.\n"};
  EXPECT_EQ(refused("nRowsInBlock='2147483647'", "0", 1), tooLarge);
  EXPECT_EQ(refused("columnStrategy='1'", "255", 1), tooLarge);
  EXPECT_EQ(refused("columnStrategy='2'", "0", 256), tooLarge);
  EXPECT_TRUE(
      contains(refused("columnStrategy='1'", "-1", 1).at(0), "no column of the table is in"));
  EXPECT_TRUE(contains(refused("nRowsInBlock='0'", "0", 1).at(0), "nRowsInBlock is 0"));
}

TEST_F(WriteColumnarGelTest, ASideFileThatCannotBeOpenedTakesTheOthersWithIt) {
  ASSERT_TRUE(QDir().mkpath(QString::fromStdString(path("x.001.cs_kelvarin"))));
  EXPECT_EQ(write("columnStrategy='2'").at(0),
            "error: Cannot open file '" + path("x.001.cs_kelvarin") + "' for write.");
  EXPECT_EQ(files(), Strings{});
}

TEST_F(WriteColumnarGelTest, WhatIsNoFileIsNeverRemoved) {
  ASSERT_EQ(mkfifo(path("x.cgel_kelvarin").c_str(), 0600), 0);
  EXPECT_EQ(write("deleteTimeOut='0'").back(),
            "error: Error: Cannot delete previous file '" + path("x.cgel_kelvarin") + "'.");
  EXPECT_EQ(access(path("x.cgel_kelvarin").c_str(), F_OK), 0);
}

TEST_F(WriteColumnarGelTest, LinksAndPipesUnderSideFileNamesAreNotFollowed) {
  put("precious");
  ASSERT_EQ(symlink(path("precious").c_str(), path("x.000.cs_kelvarin").c_str()), 0);
  ASSERT_EQ(mkfifo(path("x.001.cs_kelvarin").c_str(), 0600), 0);
  ASSERT_EQ(symlink(path("precious").c_str(), path("x.cgel_kelvarin").c_str()), 0);
  write("columnStrategy='2'");
  EXPECT_EQ(content("precious"), kOld);
  EXPECT_EQ(rowsOf("x.cgel_kelvarin"), 3);
  for (const char* name : {"x.cgel_kelvarin", "x.000.cs_kelvarin", "x.001.cs_kelvarin"}) {
    struct stat status{};
    EXPECT_EQ(lstat(path(name).c_str(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode)) << name;
  }
}

TEST_F(WriteColumnarGelTest, SideFilesOfAnotherTableAreNeverTakenAway) {
  put("x.2023_kelvarin");
  put("x.000.cs_kelvarin");
  EXPECT_TRUE(contains(write("").at(0), "x.2023_kelvarin' has side files of the same names"));
  EXPECT_EQ(content("x.000.cs_kelvarin"), kOld);
  EXPECT_EQ(files().size(), 2u);
}

TEST_F(WriteColumnarGelTest, AForeignFileIsReplacedWithAWarning) {
  put("x.cgel_kelvarin", "a,b\n1,2\n");
  const Strings log = write("");
  ASSERT_EQ(log.size(), 1u);
  EXPECT_TRUE(contains(log[0], "is no columnar file, and it is replaced by one"));
  EXPECT_EQ(rowsOf("x.cgel_kelvarin"), 3);
}

// Another process is writing it, here another opening of the file.
TEST_F(WriteColumnarGelTest, AFileThatIsBeingWrittenIsWaitedForToo) {
  put("x.cgel_kelvarin");
  put(".x.cgel_kelvarin.new");
  for (const char* name : {"x.cgel_kelvarin", ".x.cgel_kelvarin.new"}) {
    const int writer = ::open(path(name).c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_TRUE(takeFileLock(writer));
    EXPECT_EQ(write("deleteTimeOut='0'").back(),
              "error: Error: Cannot delete previous file '" + path("x.cgel_kelvarin") + "'.");
    EXPECT_EQ(content(name), kOld);
    ::close(writer);
  }
  EXPECT_EQ(write(""), Strings{});
  EXPECT_EQ(rowsOf("x.cgel_kelvarin"), 3);
}

TEST_F(WriteColumnarGelTest, ReplacedAtEndTheOldFileStaysUntilTheNewOneIsWhole) {
  const Strings oldFiles = {"x.000.cs_kelvarin", "x.007.cs_kelvarin", "x.cgel_kelvarin"};
  for (const std::string& name : oldFiles) {
    put(name);
  }
  const auto areOld = [&] {
    return content("x.cgel_kelvarin") == kOld && content("x.000.cs_kelvarin") == kOld &&
           content("x.007.cs_kelvarin") == kOld;
  };
  auto failed = harness("replaceAtEnd='1'");
  failed.push(kThreeRows);
  failed.runWithoutReading(2);
  EXPECT_TRUE(areOld());
  failed.run().fail();
  failed.close();
  EXPECT_TRUE(areOld());
  EXPECT_EQ(allFiles(), oldFiles);

  put(".x.cgel_kelvarin.new");  // of a run that was killed
  put(".x.cgel_kelvarin.003.cs_kelvarin");
  EXPECT_EQ(write("replaceAtEnd='1'", {}), Strings{});
  EXPECT_TRUE(areOld());
  EXPECT_EQ(write("replaceAtEnd='1' columnStrategy='2'"), Strings{});
  EXPECT_EQ(rowsOf("x.cgel_kelvarin"), 3);
  EXPECT_EQ(allFiles(), (Strings{"x.000.cs_kelvarin", "x.001.cs_kelvarin", "x.cgel_kelvarin"}));
}

TEST_F(WriteColumnarGelTest, ReplacedAtEndEachSplitIsAFileForItself) {
  put("xa.cgel_kelvarin");
  put("xa.004.cs_kelvarin");
  auto h = harness("replaceAtEnd='1' split='2' splitVar='t'");
  h.push(kThreeRows);
  h.runWithoutReading(2);
  EXPECT_EQ(content("xa.cgel_kelvarin"), kOld);
  h.finish();
  EXPECT_EQ(rowsOf("xa.cgel_kelvarin"), 2);
  EXPECT_EQ(allFiles(), (Strings{"xa.000.cs_kelvarin", "xa.cgel_kelvarin", "xb.000.cs_kelvarin",
                                 "xb.cgel_kelvarin"}));
}

TEST_F(WriteColumnarGelTest, ColumnStrategies) {
  const auto sideFiles = [&](const std::string& attributes, const std::string& child) {
    logOf(RowHarness::of<WriteColumnarGel>("<writeColumnarGel name='w' file='" +
                                               path("x.cgel_kelvarin") + "' " + attributes + ">" +
                                               child + "</writeColumnarGel>",
                                           "k:K t:U n:F"),
          {{1, "a", 2}});
    return files().size() - 1;
  };
  EXPECT_EQ(sideFiles("", "<ColumnStrategy><C n='k' s='1'/></ColumnStrategy>"), 1u);
  EXPECT_EQ(sideFiles("columnStrategy='2'", ""), 3u);
  EXPECT_EQ(sideFiles("columnStrategy='1'",
                      "<ColumnStrategy><C n='k' s='0'/><C n='n' s='1'/></ColumnStrategy>"),
            2u);
}

TEST_F(WriteColumnarGelTest, RowsAreTestedByTheValueOfTheirColumn) {
  const auto rowsWith = [&](const std::string& columns, const std::string& value,
                            const Rows& rows) {
    write("writeAllRows='0' testCol='t' testValue='" + value + "'", rows, columns);
    return rowsOf("x.cgel_kelvarin");
  };
  EXPECT_EQ(rowsWith("k:K t:U", "a", kThreeRows), 2);
  EXPECT_EQ(rowsWith("k:K t:U", "", {{1, "a"}, {2, nullptr}, {3, ""}}), 2);
  EXPECT_EQ(rowsWith("k:K t:F", "2.50", {{1, 2.5}, {2, nullptr}, {3, 2}}), 1);
  EXPECT_EQ(rowsWith("k:K t:K", "7", {{1, 7}, {2, 70}}), 1);
}

TEST_F(WriteColumnarGelTest, MissingColumnsAndNamesAreReported) {
  const std::string file = path("x.cgel_kelvarin");
  EXPECT_EQ(write("writeAllRows='0' testCol='no'"),
            Strings{"error: \nERROR writing to CSV file '" + file +
                    "': cannot find column 'no' to test\n"});
  EXPECT_EQ(write("split='2' splitVar='no'"),
            Strings{"error: \nERROR writing to Kelvarin CGel file '" + file +
                    "': cannot find column 'no' for split\n"});
  EXPECT_EQ(logOf(RowHarness::of<WriteColumnarGel>("<writeColumnarGel name='w'/>", "k:K t:U")),
            Strings{"error: No filename?"});
  EXPECT_EQ(files(), Strings{});
}

TEST_F(WriteColumnarGelTest, AFolderIsCreatedOnlyWhenAsked) {
  const std::string file = path("a/b/x.cgel_kelvarin");
  for (const bool isAsked : {false, true}) {
    auto h = RowHarness::of<WriteColumnarGel>("<writeColumnarGel name='w' file='" + file +
                                                  "' createDir='" + (isAsked ? "1" : "0") + "'/>",
                                              "k:K t:U");
    h.push(kThreeRows);
    h.finish();
    const Strings refused = {"error: Cannot open file '" + file + "' for write."};
    const Strings reason = {"The system's reason for file '" + file +
                            "': No such file or directory. Check the "
                            "folder, its permissions and the room on its disk."};
    EXPECT_EQ(h.log(), isAsked ? Strings{} : refused);
    EXPECT_EQ(h.explanations(), isAsked ? Strings{} : reason);
  }
  EXPECT_EQ(rowsOf("a/b/x.cgel_kelvarin"), 3);
}

// A folder of that name is something that cannot be removed as a file.
TEST_F(WriteColumnarGelTest, ALockedFileIsWaitedForUntilTheTimeout) {
  const std::string file = path("x.cgel_kelvarin");
  const std::string locked =
      "warning: Warning: File '" + file + "' is locked. Waiting for the file to unlock...";
  ASSERT_TRUE(QDir().mkpath(QString::fromStdString(file)));
  int passed = 0;
  const auto run = [&](const std::string& attributes, Pause pause) {
    passed = 0;
    auto h = harness(attributes);
    h.actionAs<WriteColumnarGel>().setPause([&, pause](int milliseconds) {
      passed += milliseconds;
      pause(milliseconds);
    });
    h.push(kThreeRows);
    h.finish();
    return h.log();
  };
  const std::string refused = "error: Error: Cannot delete previous file '" + file + "'.";
  EXPECT_EQ(run("deleteTimeOut='0'", [](int) {}), (Strings{locked, refused}));
  EXPECT_EQ(passed, 0);
  EXPECT_EQ(run("deleteTimeOut='3'", [](int) {}), (Strings{locked, refused}));
  EXPECT_EQ(passed, 3000);
  const auto unlock = [&](int) {
    if (passed > 1500) {
      QDir().rmdir(QString::fromStdString(file));
    }
  };
  EXPECT_EQ(run("deleteTimeOut='3'", unlock), (Strings{locked, "info: File is unlocked!"}));
  EXPECT_EQ(rowsOf("x.cgel_kelvarin"), 3);
}

TEST_F(WriteColumnarGelTest, AStoppedRunGivesUpWaitingWithoutAWord) {
  ASSERT_TRUE(QDir().mkpath(QString::fromStdString(path("x.cgel_kelvarin"))));
  auto h = harness("deleteTimeOut='60'");
  int passed = 0;
  h.actionAs<WriteColumnarGel>().setPause([&](int milliseconds) {
    passed += milliseconds;
    h.run().status = GlobalParameters::RunningState::stoppedByUser;
  });
  h.push(kThreeRows);
  h.finish();
  EXPECT_EQ(h.log().size(), 1u);
  EXPECT_LE(passed, 1000);
}

TEST_F(WriteColumnarGelTest, AnUnsortedSplitKeepsAFileOpenForEachValue) {
  const Rows rows = {{1, "a"}, {2, "b/\\\x01"}, {3, "a"}, {4, nullptr}, {5, ".c"}};
  EXPECT_EQ(write("split='2' splitVar='t'", rows),
            Strings{"warning: WARNING writing to Kelvarin CGel file: The table to split is not "
                    "sorted on the split variable: The number of splits (i.e. the number of files) "
                    "is limited to the maximum number of simultaneous opened file allowed by the "
                    "OS.\n"});
  EXPECT_EQ(rowsOf("xa.cgel_kelvarin"), 2);
  for (const char* name : {"xb___.cgel_kelvarin", "x_null.cgel_kelvarin", "x_c.cgel_kelvarin"}) {
    EXPECT_EQ(rowsOf(name), 1) << name;
  }
}

TEST_F(WriteColumnarGelTest, ASortedSplitClosesEachFileBeforeTheNext) {
  auto h = harness("split='2' splitVar='k'");
  h.input(0).setSortOrder({SortInfos(0, SortType::numberAscending)});
  h.push(Rows{{nullptr, "a"}, {1, "a"}, {1, "b"}, {2, "a"}});
  h.runWithoutReading(4);
  EXPECT_EQ(rowsOf("x_null.cgel_kelvarin"), 1);
  EXPECT_EQ(rowsOf("x1.cgel_kelvarin"), 2);
  h.finish();
  EXPECT_EQ(rowsOf("x2.cgel_kelvarin"), 1);
  EXPECT_EQ(h.log(), Strings{});
}

TEST_F(WriteColumnarGelTest, AValueThatComesBackOrMeetsAnotherStopsTheRun) {
  auto sorted = harness("split='2' splitVar='k'");
  sorted.input(0).setSortOrder({SortInfos(0, SortType::numberAscending)});
  sorted.push(Rows{{1, "a"}, {2, "a"}, {1, "a"}});
  sorted.finish();
  EXPECT_TRUE(sorted.hasFailed());
  EXPECT_TRUE(contains(sorted.log().at(0), "the value '1' of the split column comes back"));
  EXPECT_EQ(rowsOf("x1.cgel_kelvarin"), 1);  // not overwritten

  const Strings meeting = write("split='2' splitVar='t'", {{1, "a/b"}, {2, "a\\b"}});
  EXPECT_TRUE(contains(meeting.at(1), "two values of the split column, 'a/b' and 'a\\b'"));
  const Strings missing = write("split='2' splitVar='t'", {{1, "_null"}, {2, nullptr}});
  EXPECT_TRUE(contains(missing.at(1), "'_null' and '(missing)'"));
}

// Without an extension the point of a number ends the name, as far as side files are concerned.
TEST_F(WriteColumnarGelTest, FilesThatWouldShareTheirSideFilesStopTheRun) {
  const Strings log = logOf(
      RowHarness::of<WriteColumnarGel>(
          "<writeColumnarGel name='w' split='2' splitVar='n' file='" + path("x") + "'/>", "n:F"),
      {{1.5}, {2.5}, {1.75}});
  EXPECT_TRUE(contains(log.at(1),
                       "two values of the split column, '1.5' and '1.75', give files that "
                       "differ only after the last point"));
  EXPECT_EQ(files(), (Strings{"x1.000.cs", "x1.5", "x2.000.cs", "x2.5"}));
}

TEST_F(WriteColumnarGelTest, NaNsOfAllKindsAreOneSplit) {
  write("split='2' splitVar='n'", {{std::nan("1")}, {-std::nan("2")}, {nullptr}}, "n:F");
  EXPECT_EQ(rowsOf("xnan.cgel_kelvarin"), 2);
  EXPECT_EQ(rowsOf("x_null.cgel_kelvarin"), 1);
}

TEST_F(WriteColumnarGelTest, NamesMayBeExpressionsOverTheSplitValue) {
  const auto run = [&](const std::string& name) {
    auto h = RowHarness::of<WriteColumnarGel>(
        "<writeColumnarGel name='w' split='2' splitVar='t' advancedNaming='1' file='" + path(name) +
            "'/>",
        "k:K t:U");
    h.parameters().setValue("year", "2024");
    return logOf(std::move(h), {{1, "a"}, {2, nullptr}});
  };
  EXPECT_EQ(
      run("${year}_&quot;+SplitVal+&quot;_&quot;+toupper(SplitVal)+&quot;.cgel_kelvarin").size(),
      1u);
  EXPECT_EQ(rowsOf("2024_a_A.cgel_kelvarin"), 1);
  EXPECT_EQ(rowsOf("2024__null__NULL.cgel_kelvarin"), 1);
  const Strings wrong = run("&quot;+nothing(+&quot;.cgel_kelvarin");
  ASSERT_EQ(wrong.size(), 2u);
  EXPECT_TRUE(contains(wrong[1], "the naming expression 'nothing(' cannot be used"));
  // Two splits whose names differ after the NUL would be one file.
  const Strings unseen = run("x&quot;+b64toa(\"AA==\")//SplitVal+&quot;.cgel_kelvarin");
  ASSERT_EQ(unseen.size(), 2u);
  EXPECT_TRUE(contains(unseen[1], "has a control character (code 0) at position 0"));
}

TEST_F(WriteColumnarGelTest, ASplitBySizeIsTheSameForAnyNumberOfThreads) {
  Strings first;
  for (const int threads : {1, 4}) {
    auto h = harness(
        "split='1' segmentSize='1' nRowsInBlock='1000' nThread='" + std::to_string(threads) + "'",
        "n:F t:U");
    unsigned state = 1;
    for (int i = 0; i < 250000; ++i) {
      state = state * 1664525u + 1013904223u;
      h.push({state / 7.0, std::to_string(state)});
    }
    h.finish();
    EXPECT_EQ(h.log(), Strings{});
    Strings sizes;
    long long rows = 0;
    for (const std::string& name : files()) {
      sizes.push_back(name + " " + std::to_string(content(name).size()));
      rows += name.ends_with(".cgel_kelvarin") ? rowsOf(name) : 0;
    }
    EXPECT_EQ(rows, 250000);
    EXPECT_GE(sizes.size(), 6u);
    EXPECT_TRUE(first.empty() || sizes == first);
    first = sizes;
  }
  EXPECT_EQ(rowsOf("x_000.cgel_kelvarin") % 1000, 0);
}

TEST_F(WriteColumnarGelTest, TwoWritersOfOneNameAreRefusedBeforeAnythingIsDeleted) {
  put("x.cgel_kelvarin");
  GlobalParameters graph;
  const auto actionWith = [&](const std::string& attributes,
                              const std::string& name = "x.cgel_kelvarin") {
    const std::string xml =
        "<writeColumnarGel name='w' file='" + path(name) + "' " + attributes + "/>";
    return std::make_unique<WriteColumnarGel>(*parseXml(QByteArray::fromStdString(xml)), &graph);
  };
  testing::RecordingHost host;
  auto first = actionWith("");
  auto second = actionWith("");
  auto careless = actionWith("checkNameCollision='0'");
  auto sharing = actionWith("", "x.other_kelvarin");  // the side files
  EXPECT_EQ(first->init(), 0);
  EXPECT_NE(second->init(), 0);
  EXPECT_TRUE(contains(host.log().at(0), "The actions 'w' and 'w' write the same file: '"));
  EXPECT_NE(sharing->init(), 0);
  EXPECT_EQ(careless->init(), 0);
  first->close();
  EXPECT_EQ(second->init(), 0);
  EXPECT_EQ(content("x.cgel_kelvarin"), kOld);
}

TEST_F(WriteColumnarGelTest, AFullDiskFailsTheRunWhenTheAnswerIsToGiveUp) {
  testing::FullDisk disk(1000);
  auto h = harness("nRowsInBlock='10'");
  h.pushRepeated({1, "a text that takes some space"}, 20000);
  h.finish();
  EXPECT_TRUE(h.hasFailed());
  ASSERT_EQ(h.log().size(), 1u);
  ASSERT_EQ(h.explanations().size(), 1u);
  EXPECT_TRUE(contains(h.log()[0], "error: Cannot write to file '"));
  EXPECT_TRUE(contains(h.explanations()[0], "': No space left on device. "));
  EXPECT_EQ(h.host().fullDiskFiles().size(), 1u);
  EXPECT_EQ(rowsOf("x.cgel_kelvarin"), -1);
}

TEST(SplitNames, TextsGoBeforeTheExtension) {
  EXPECT_EQ(insertedBeforeExtension("a.b/c.d", "_x"), "a.b/c_x.d");
  EXPECT_EQ(insertedBeforeExtension("a.b/c", "_x"), "a.b/c_x");
  EXPECT_EQ(insertedBeforeExtension("a.b\\c", "_x"), "a.b\\c_x");
  EXPECT_EQ(segmentText(7), "_007");
  EXPECT_EQ(segmentText(1234), "_1234");
}

}  // namespace kelvarin
