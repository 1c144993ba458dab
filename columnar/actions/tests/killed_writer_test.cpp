// Processes that are killed while they write a columnar file, at any byte: the file reads as
// incomplete and has the first rows of the table, never anything else.
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "columnar/actions/read_columnar_gel.h"
#include "columnar/writer/columnar_hd_writer.h"
#include "host/contract/row_buffer.h"
#include "host/testing/full_disk.h"
#include "host/testing/row_harness.h"

namespace kelvarin {

namespace {

using testing::RowHarness;
using testing::Rows;
using testing::Strings;
using RunningState = GlobalParameters::RunningState;

constexpr int kSets = 3;

// A table of texts whose row i has the number i in every column.
struct Table {
  int columns;
  int rows;
  int rowsInBlock;
};

// Few blocks, and one descriptor record at the end.
constexpr Table kSmallTable{.columns = 4, .rows = 50, .rowsInBlock = 20};
// Its descriptors are so wide that 1000 blocks fill a record.
constexpr Table kWideTable{.columns = 100, .rows = 2300, .rowsInBlock = 1};

bool writeTable(const Table& table, const QString& file, const AskAboutFullDisk& ask) {
  PinOutMetaData columns;
  columns.setColumnCount(table.columns);
  QHash<QString, int> sets;
  for (int i = 0; i < table.columns; ++i) {
    columns.setName(i, QString::number(i));
    sets[QString::number(i)] = i % kSets;
  }
  OneRow row(&columns);
  RowBuffer buffer(1 << 12);
  GlobalParameters parameters;
  ColumnarHDWriter writer(ask);
  bool isTaken = writer.openHD(file, table.rowsInBlock, sets, &parameters, 2);
  for (int number = 0; isTaken && number < table.rows; ++number) {
    buffer.reset();
    std::fill_n(row.getAllColForWrite(), table.columns,
                bytesFromQString(&buffer, QString::number(number)));
    isTaken = writer.writeToHD(&row);
  }
  return writer.closeHD(RunningState::endedNormally) && isTaken;
}

class KilledWriterTest : public ::testing::Test {
 protected:
  QString path() const { return m_folder.filePath(QStringLiteral("k.cgel_kelvarin")); }

  // Bytes of all files, when nothing kills the writer.
  long long sizeOf(const Table& table) const {
    constexpr long long kPlenty = 1'000'000'000;
    const testing::FullDisk disk(kPlenty);
    EXPECT_TRUE(writeTable(table, path(), {}));
    return kPlenty - disk.bytesLeft();
  }

  // Another process writes, and is killed in the middle of the write that exceeds this size.
  void killAfter(const Table& table, long long bytes) const {
    const pid_t child = fork();
    if (child == 0) {
      const testing::FullDisk disk(bytes);
      (void)writeTable(table, path(), [](const QString&, int) { return raise(SIGKILL) == 0; });
      _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status)) << bytes;
  }

  // The number of rows; those of two columns from different sets are compared.
  int rowsRead(const Table& table, Strings& log) const {
    const std::string last = std::to_string(table.columns - 1);
    auto reader = RowHarness::of<ReadColumnarGel>(
        "<ReadColumnarGel name='r' readIncompleteFile='1' skipCorruptedBlocks='1' "
        "readAllColumns='0' fileName='" +
        path().toStdString() + "'><ColumnsToRead><SL><S>0</S><S>" + last +
        "</S></SL></ColumnsToRead></ReadColumnarGel>");
    const Rows rows = reader.rows(0);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      EXPECT_EQ(rows[i], (testing::Values{std::to_string(i), std::to_string(i)}));
    }
    log = reader.log();
    return static_cast<int>(rows.size());
  }

  QTemporaryDir m_folder;
};

bool saysIncompleteOrUnreadable(const Strings& log) {
  return !log.empty() && (log[0].find("' is incomplete.") != std::string::npos ||
                          log[0].find("': File is corrupted.") != std::string::npos);
}

}  // namespace

TEST_F(KilledWriterTest, LeavesNothingWrongOfASmallTable) {
  const long long size = sizeOf(kSmallTable);
  Strings log;
  ASSERT_EQ(rowsRead(kSmallTable, log), kSmallTable.rows);
  EXPECT_EQ(log, Strings{});
  for (long long bytes = 0; bytes < size; bytes += 5) {
    killAfter(kSmallTable, bytes);
    const int rows = rowsRead(kSmallTable, log);
    EXPECT_TRUE(rows == 0 || rows == kSmallTable.rows) << bytes;
    EXPECT_TRUE(saysIncompleteOrUnreadable(log)) << bytes;
  }
}

TEST_F(KilledWriterTest, KeepsWhatAFinishedRecordDescribes) {
  const long long size = sizeOf(kWideTable);
  constexpr int kDeaths = 12;
  bool hasKeptSome = false;
  Strings log;
  for (int i = 1; i <= kDeaths; ++i) {
    const long long bytes = size * i / kDeaths - 1;
    killAfter(kWideTable, bytes);
    const int rows = rowsRead(kWideTable, log);
    EXPECT_TRUE(rows % 1000 == 0 || rows == kWideTable.rows) << bytes;
    EXPECT_TRUE(saysIncompleteOrUnreadable(log)) << bytes;
    hasKeptSome = hasKeptSome || (rows > 0 && rows < kWideTable.rows);
  }
  EXPECT_TRUE(hasKeptSome);
}

}  // namespace kelvarin
