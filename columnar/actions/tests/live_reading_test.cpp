// One writer and four readers of the same file at the same time: what is read are always the first
// rows of the table, whole in both column sets.
//
// One table is written; with KELVARIN_LIVE_READING_SECONDS set, table after table for that long:
//   KELVARIN_LIVE_READING_SECONDS=60 build/tsan/tests/live_reading_test
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>
#include <vector>

#include <QFile>
#include <QTemporaryDir>

#include "columnar/reader/block_reader.h"
#include "columnar/writer/columnar_hd_writer.h"
#include "host/contract/batch_rows.h"
#include "host/contract/row_buffer.h"

namespace kelvarin {

namespace {

constexpr int kTextColumns = 8;  // wide descriptors fill several records soon
constexpr std::uint32_t kRows = 30'000;
constexpr int kReaders = 4;

class LiveReading : public ::testing::Test {
 protected:
  using Clock = std::chrono::steady_clock;

  QString path() const {
    return m_folder.filePath(QStringLiteral("live%1.cgel_kelvarin").arg(m_table));
  }

  static Clock::time_point end() {
    const char* seconds = std::getenv("KELVARIN_LIVE_READING_SECONDS");
    return Clock::now() + std::chrono::seconds(seconds == nullptr ? 0 : std::atoi(seconds));
  }

  void writeAll() {
    PinOutMetaData columns;
    columns.setColumnCount(1 + kTextColumns);
    columns.setName(0, QStringLiteral("id"));
    columns.setMeta(0, MetaInfo(MetaTypeColumn::key, 0));
    QHash<QString, int> sets{{QStringLiteral("id"), 0}};
    for (int i = 1; i <= kTextColumns; ++i) {
      columns.setName(i, QString::number(i));
      sets[QString::number(i)] = 1;
    }
    OneRow row(&columns);
    RowBuffer buffer(1 << 12);
    GlobalParameters parameters;
    ColumnarHDWriter writer;
    ASSERT_TRUE(writer.openHD(path(), 1, sets, &parameters, 2));
    for (std::uint32_t number = 0; number < kRows; ++number) {
      buffer.reset();
      unsigned char* text = bytesFromQString(&buffer, QString::number(number));
      row.getAllColForWrite()[0] = bytesFromKey(&buffer, number);
      std::fill_n(row.getAllColForWrite() + 1, kTextColumns, text);
      ASSERT_TRUE(writer.writeToHD(&row));
    }
    EXPECT_TRUE(writer.closeHD(GlobalParameters::RunningState::endedNormally));
    m_isWritten = true;
  }

  // The number of rows; they are those of the table from its beginning.
  std::uint64_t readOnce() const {
    const auto file = GelFile::open(path().toStdString(), IncompleteFiles::accept);
    if (!file) {
      return 0;  // not begun yet
    }
    const auto reader = BlockReader::open(**file, {0, 1});
    if (!reader) {
      return 0;
    }
    std::uint64_t rows = 0;
    unsigned char* values[2];
    for (BatchRows batch;;) {
      const ReadEvent event = reader.value()->next();
      EXPECT_NE(event.kind, ReadEvent::Kind::corrupted);
      for (batch.start(event.batch); batch.rowsLeft() > 0; ++rows) {
        batch.take(values);
        EXPECT_EQ(keyFromBytes(values[0]), rows);
        EXPECT_EQ(textFromBytes(values[1]), std::to_string(rows));
      }
      if (event.isLast()) {
        return rows;
      }
    }
  }

  void writeAndReadATable() {
    m_isWritten = false;
    std::vector<std::thread> readers;
    for (int i = 0; i < kReaders; ++i) {
      readers.emplace_back([this] {
        std::uint64_t before = 0;
        while (!m_isWritten) {
          const std::uint64_t rows = readOnce();
          EXPECT_GE(rows, before);
          before = rows;
        }
        EXPECT_EQ(readOnce(), kRows);
      });
    }
    writeAll();
    for (std::thread& reader : readers) {
      reader.join();
    }
  }

  QTemporaryDir m_folder;
  int m_table = 0;
  std::atomic<bool> m_isWritten = false;
};

TEST_F(LiveReading, EveryReadIsABeginningOfTheTable) {
  const Clock::time_point last = end();
  do {
    writeAndReadATable();
    QFile::remove(path());
    ++m_table;
  } while (Clock::now() < last && !HasFailure());
}

}  // namespace

}  // namespace kelvarin
