// ReadColumnarGel in a run: rows, columns, files that are missing, unfinished or damaged, and what
// is logged about them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <unistd.h>

#include <QTemporaryDir>

#include "base/file_lock.h"
#include "columnar/actions/read_columnar_gel.h"
#include "columnar/reader/tests/made_file.h"
#include "host/testing/row_harness.h"

namespace kelvarin::testing {

namespace {

const std::vector<MadeColumn> kColumns{
    {"id", 'K', 0, StorageCode::ascendingKey}, {"price", 'F', 0}, {"name", 'U', 0}};

std::vector<Values> someRows(int count) {
  std::vector<Values> rows;
  for (int i = 0; i < count; ++i) {
    rows.push_back({i, i / 2.0, "n" + std::to_string(i)});
  }
  return rows;
}

class ReadColumnarGelTest : public ::testing::Test {
 protected:
  std::string path(const std::string& name = FileShape{}.name) const {
    return m_folder.filePath(QString::fromStdString(name)).toStdString();
  }
  void save(const MemoryFiles& files) const { files.saveTo(m_folder.path().toStdString()); }
  void saveRows(int count, FileShape shape = {}) const {
    save(makeFile(kColumns, someRows(count), shape));
  }

  // An action that reads the made file, with more attributes and children.
  RowHarness reader(const std::string& attributes = {}, const std::string& children = {}) const {
    return RowHarness::of<ReadColumnarGel>("<ReadColumnarGel fileName='" + path() + "' " +
                                           attributes + ">" + children + "</ReadColumnarGel>");
  }
  // An action that takes its file names from a pin.
  RowHarness readerOfPin(const std::string& attributes = {}) const {
    return RowHarness::of<ReadColumnarGel>(
        "<ReadColumnarGel fileNameFromPin='1' " + attributes + "/>", "file:U");
  }
  // The log of a run. It has an error exactly when the run fails.
  static Strings logOf(RowHarness&& h) {
    h.finish();
    const Strings log = h.log();
    EXPECT_EQ(h.hasFailed(), std::any_of(log.begin(), log.end(), [](const std::string& line) {
                return line.starts_with("error: ");
              }));
    return log;
  }

 private:
  QTemporaryDir m_folder;
};

// A line whose text is fixed, and what to do about it.
void expectAdvised(const Strings& log, const std::string& line,
                   const std::string& advice = "kelvarin gel recover") {
  ASSERT_EQ(log.size(), 2u);
  EXPECT_EQ(log[0], line);
  EXPECT_TRUE(log[1].starts_with("info: ") && log[1].find(advice) != std::string::npos) << log[1];
}

TEST_F(ReadColumnarGelTest, ReadsRowsColumnsAndOrder) {
  saveRows(11);
  for (const char* ahead : {"-3", "0", "1", "2", "50"}) {
    auto h = reader(std::string("nBlockForward='") + ahead + "'");
    EXPECT_EQ(h.rows(0), someRows(11));
    EXPECT_EQ(h.columns(0), "id:K price:F name:U");
    EXPECT_EQ(h.sortOrder(0), (QVector<SortInfos>{SortInfos(0, SortType::numberAscending)}));
    EXPECT_FLOAT_EQ(h.action().completion(), -1.0f);
    EXPECT_EQ(h.log(), Strings{});
  }
}

TEST_F(ReadColumnarGelTest, ReportsProgress) {
  saveRows(6000, {.rowsInBlock = 3000});
  auto h = reader();
  for (int i = 0; i < 3001; ++i) {
    ASSERT_TRUE(h.pull(0));
  }
  EXPECT_FLOAT_EQ(h.action().completion(), 0.5f);
}

TEST_F(ReadColumnarGelTest, ChoosesColumnsFromTheListOrThePin) {
  saveRows(2);
  const char* list = "<ColumnsToRead><SL><S>name</S><S>id</S><S>name</S></SL></ColumnsToRead>";
  for (const char* way : {"columnSelection='1'", "readAllColumns='0' columnSelection='2'"}) {
    auto h = reader(way, list);
    EXPECT_EQ(h.rows(0), (Rows{{"n0", 0}, {"n1", 1}}));
    EXPECT_EQ(h.columns(0), "name:U id:K");
    EXPECT_EQ(h.sortOrder(0), (QVector<SortInfos>{SortInfos(1, SortType::numberAscending)}));
  }
  auto fromPin = reader("columnSelection='2'");
  fromPin.columnsOfPin(1, "column:U").push({"price"});
  EXPECT_EQ(fromPin.rows(0), (Rows{{0.0}, {0.5}}));

  auto missing = reader("columnSelection='1'", "<ColumnsToRead><SL><S>x</S></SL></ColumnsToRead>");
  EXPECT_EQ(missing.rows(0), Rows{});
  EXPECT_EQ(missing.log(), Strings{"error: The column 'x' is not in the file '" + path() + "'."});
  EXPECT_TRUE(missing.hasFailed());
}

TEST_F(ReadColumnarGelTest, ReadsSeveralFilesWithTheSameColumns) {
  saveRows(2);
  save(makeFile({{"name", 'U'}, {"price", 'F'}, {"id", 'K'}}, {{"x", 1.5, 9}},
                {.name = "b.cgel_kelvarin"}));
  save(makeFile({{"id", 'K'}}, {{1}}, {.name = "c.cgel_kelvarin"}));
  auto h = readerOfPin();
  h.push(Rows{{path()}, {path("b.cgel_kelvarin")}});
  EXPECT_EQ(h.rows(0), (Rows{{0, 0.0, "n0"}, {1, 0.5, "n1"}, {9, 1.5, "x"}}));
  EXPECT_EQ(h.sortOrder(0), QVector<SortInfos>{});

  // A column that only one of two files has.
  for (const auto& [first, second] : {std::pair("made.cgel_kelvarin", "c.cgel_kelvarin"),
                                      std::pair("c.cgel_kelvarin", "made.cgel_kelvarin")}) {
    auto lacking = readerOfPin();
    lacking.push(Rows{{path(first)}, {path(second)}});
    EXPECT_EQ(logOf(std::move(lacking)), Strings{"error: The column 'price' is not in the file '" +
                                                 path("c.cgel_kelvarin") + "'."});
  }
}

TEST_F(ReadColumnarGelTest, NamesFromThePinMustBeReadable) {
  saveRows(1);
  auto strict = readerOfPin();
  strict.push(Rows{{path()}, {nullptr}});
  EXPECT_EQ(strict.rows(0), Rows{});
  EXPECT_EQ(strict.log(),
            Strings{"error: ERROR: Cannot read the name of the Columnar Kelvarin CGel "
                    "file on input pin??"});
  auto lenient = readerOfPin("abortIfMissing='0'");
  lenient.push(Rows{{""}, {path()}});
  EXPECT_EQ(lenient.rows(0), (Rows{{0, 0.0, "n0"}}));
  EXPECT_EQ(lenient.log(),
            Strings{"warning: Warning: Cannot read the name of the Columnar Kelvarin "
                    "CGel file on input pin??"});
  auto empty = RowHarness::of<ReadColumnarGel>("<ReadColumnarGel fileNameFromPin='1'/>");
  empty.columnsOfPin(0, PinOutMetaData());
  EXPECT_EQ(logOf(std::move(empty)), Strings{"error: ERROR: No column to read on input pin 1??"});
}

TEST_F(ReadColumnarGelTest, AMissingFileStopsOrIsSkipped) {
  EXPECT_EQ(logOf(reader()),
            Strings{"error: Error: The Columnar file '" + path() + "' does not exists"});
  EXPECT_EQ(logOf(reader("abortIfMissing='0'")),
            Strings{"warning: Warning: The Columnar file '" + path() + "' does not exists"});
}

TEST_F(ReadColumnarGelTest, WaitsForAFileThatComes) {
  const std::string waiting =
      "warning: Warning: cannot read Columnar file '" + path() + "': Waiting for the file...";
  auto h = reader("timeOut='5'");
  int passed = 0;
  h.actionAs<ReadColumnarGel>().setPause([&](int milliseconds) {
    passed += milliseconds;
    if (passed == 2500) {
      saveRows(3);
    }
  });
  EXPECT_EQ(h.rows(0), someRows(3));
  EXPECT_EQ(h.log(), Strings{waiting});
  EXPECT_EQ(passed, 3000);

  std::filesystem::remove(path());
  auto late = reader("timeOut='2'");
  passed = 0;
  late.actionAs<ReadColumnarGel>().setPause([&](int milliseconds) { passed += milliseconds; });
  late.finish();
  EXPECT_EQ(passed, 2000);
  EXPECT_EQ(late.log(),
            (Strings{waiting, "error: Error: The Columnar file '" + path() + "' does not exists"}));
  auto checked = reader("timeOut='900'");
  checked.checkOnly();
  EXPECT_EQ(logOf(std::move(checked)),
            Strings{"error: Error: The Columnar file '" + path() + "' does not exists"});
  auto stopped = reader("timeOut='900'");
  stopped.actionAs<ReadColumnarGel>().setPause(
      [&](int) { stopped.run().status = GlobalParameters::RunningState::stoppedByUser; });
  stopped.finish();
  EXPECT_EQ(stopped.log(), Strings{waiting});
}

TEST_F(ReadColumnarGelTest, AFileThatCannotBeOpenedOrIsNone) {
  std::filesystem::create_directory(path());
  const std::string warning =
      "warning: Warning: cannot open Columnar file '" + path() + "' for read\n";
  EXPECT_EQ(logOf(reader()),
            (Strings{warning, "error: ERROR: Can't open file '" + path() + "' for read."}));
  EXPECT_EQ(logOf(reader("abortIfMissing='0'")),
            (Strings{warning, "warning: ERROR: Can't open file '" + path() + "' for read."}));
  std::filesystem::remove(path());
  std::ofstream(path()) << "id,price\n1,2\n";
  EXPECT_EQ(logOf(reader("skipCorruptedBlocks='1'")),
            Strings{"error: ERROR: Can't read file '" + path() + "': File is corrupted."});
  saveRows(3);
  const std::string side = path("made.000.cs_kelvarin");
  std::filesystem::remove(side);
  for (const bool isChecked : {false, true}) {
    auto noSide = reader();
    if (isChecked) {
      noSide.checkOnly();
    }
    EXPECT_EQ(logOf(std::move(noSide)),
              Strings{"error: ERROR: Cannot open Column-Set file '" + side + "'."});
  }
}

TEST_F(ReadColumnarGelTest, AnUnfinishedFileIsReadWhenTheUserWantsIt) {
  saveRows(6, kKilledWriter);
  expectAdvised(logOf(reader()),
                "error: ERROR: Can't read file '" + path() + "' because it seems incomplete.");
  auto accepted = reader("readIncompleteFile='1'");
  EXPECT_EQ(accepted.rows(0), someRows(6));
  expectAdvised(accepted.log(), "warning: WARNING: File '" + path() + "' is incomplete.");
}

TEST_F(ReadColumnarGelTest, DamageStopsTheRunOrIsSkipped) {
  MemoryFiles files = makeFile(kColumns, someRows(11));
  const std::string whole = files.at("made.000.cs_kelvarin");
  files["made.000.cs_kelvarin"][whole.size() / 2] ^= 1;
  save(files);
  auto strict = reader();
  EXPECT_EQ(strict.rows(0).size(), 4u);
  expectAdvised(strict.log(),
                "error: Error: file '" + path() + "' is corrupted in data-block starting at row 4");
  auto lenient = reader("skipCorruptedBlocks='1'");
  EXPECT_EQ(lenient.rows(0).size(), 7u);
  expectAdvised(lenient.log(),
                "warning: Warning: file '" + path() + "' is corrupted - skipping rows 4 to 7");
  files["made.000.cs_kelvarin"] = whole.substr(0, whole.size() - 5);
  save(files);
  auto cut = reader("skipCorruptedBlocks='1'");
  EXPECT_EQ(cut.rows(0), someRows(8));
  expectAdvised(cut.log(), "warning: Warning: file '" + path() +
                               "' is truncated in data-block starting at row 8");
  EXPECT_FALSE(cut.hasFailed());
  auto cutStrict = reader();
  EXPECT_EQ(cutStrict.rows(0), someRows(8));
  expectAdvised(cutStrict.log(),
                "error: Error: file '" + path() + "' is truncated in data-block starting at row 8");
  EXPECT_TRUE(cutStrict.hasFailed());
}

// Small blocks are read together, and yet a warning comes when its rows would.
TEST_F(ReadColumnarGelTest, DamageIsReportedInTheOrderOfTheRows) {
  MemoryFiles files = makeFile(kColumns, someRows(11));
  std::string& side = files["made.000.cs_kelvarin"];
  side[side.size() / 2] ^= 1;
  save(files);
  auto h = reader("skipCorruptedBlocks='1'");
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(h.pull(0), someRows(4)[static_cast<std::size_t>(i)]);
  }
  EXPECT_EQ(h.log(), Strings{});
  EXPECT_EQ(h.pull(0), someRows(9)[8]);
  EXPECT_EQ(h.log().size(), 2u);
}

TEST_F(ReadColumnarGelTest, AHundredWarningsAreEnough) {
  MemoryFiles files =
      makeFile({{"id", 'K'}}, std::vector<Values>(130, Values{1}), {.rowsInBlock = 1});
  std::string& side = files["made.000.cs_kelvarin"];
  const std::size_t ofOneBlock = side.size() / 130;
  side.replace(0, side.size() - ofOneBlock, side.size() - ofOneBlock, '\x55');
  save(files);
  auto h = reader("skipCorruptedBlocks='1'");
  EXPECT_EQ(h.rows(0), Rows{{1}});
  Strings log = h.log();
  EXPECT_EQ(std::erase_if(log, [](const std::string& line) { return line.starts_with("info: "); }),
            1u);
  ASSERT_EQ(log.size(), 101u);
  EXPECT_EQ(log[99],
            "warning: Warning: file '" + path() + "' is corrupted - skipping rows 99 to 99");
  EXPECT_EQ(log[100], "warning: Warning: file '" + path() +
                          "' is corrupted - some more corruptions are not reported");
}

TEST_F(ReadColumnarGelTest, SideFilesOfAnotherTableAreNoticed) {
  const MemoryFiles files = makeFile(kColumns, someRows(11));
  std::vector<Values> others = someRows(11);
  others[0][2] = "a0";
  const MemoryFiles other = makeFile(kColumns, others);
  ASSERT_EQ(other.at("made.000.cs_kelvarin").size(), files.at("made.000.cs_kelvarin").size());
  MemoryFiles mixed = files;
  mixed["made.000.cs_kelvarin"] = other.at("made.000.cs_kelvarin");
  save(mixed);
  auto h = reader();
  EXPECT_EQ(h.rows(0), Rows{});
  expectAdvised(h.log(),
                "error: Error: file '" + path() + "' is corrupted in data-block starting at row 0",
                "the file of another table may have taken its place");
}

// Half a record at the end of a file belongs to a writer that is at work, as long as there is one.
TEST_F(ReadColumnarGelTest, AFileIsReadWhileItIsWritten) {
  FileShape shape = kKilledWriter;
  shape.blocksInRecord = 1;
  MemoryFiles files = makeFile(kColumns, someRows(8), shape);
  files["made.cgel_kelvarin"].resize(files.at("made.cgel_kelvarin").size() - 3);
  save(files);
  const int writer = ::open(path().c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_TRUE(takeFileLock(writer));
  auto live = reader("readIncompleteFile='1'");
  EXPECT_EQ(live.rows(0), someRows(4));
  EXPECT_FALSE(live.hasFailed());
  expectAdvised(live.log(), "warning: WARNING: File '" + path() + "' is incomplete.",
                "is still being written");
  ::close(writer);
  auto dead = reader("readIncompleteFile='1'");
  EXPECT_EQ(dead.rows(0), someRows(4));
  EXPECT_TRUE(dead.hasFailed());
}

TEST_F(ReadColumnarGelTest, ACheckAnnouncesTheColumnsOfTheFirstFile) {
  saveRows(5);
  auto h = reader("filterRows='1'",
                  "<CFilterRows><Expression>id_max &gt;</Expression><InputVars>"
                  "<CInputVar column='id'/></InputVars></CFilterRows>");
  h.checkOnly();
  EXPECT_EQ(h.rows(0), Rows{});
  EXPECT_EQ(h.columns(0), "id:K price:F name:U");
  ASSERT_EQ(h.log().size(), 1u);
  EXPECT_TRUE(h.log()[0].starts_with("error: Columnar Reader Error in the block filter: "));
}

}  // namespace

}  // namespace kelvarin::testing
