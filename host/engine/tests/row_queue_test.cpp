// Every reader gets every row in order, from memory or disk, and the row that it took last stays
// what it is whatever happens to the queue.
#include <deque>
#include <random>

#include <gtest/gtest.h>

#include "host/engine/row_queue.h"
#include "host/testing/full_disk.h"
#include "host/testing/recording_host.h"

namespace kelvarin::testing {
namespace {

// Every seventh text is longer than a batch.
std::size_t lengthOf(int number) {
  return number % 7 == 0 ? 300'000 : static_cast<std::size_t>(number % 100);
}

PinOutMetaData threeColumns() {
  PinOutMetaData three;
  three.setColumnCount(3);
  return three;
}

// A row of a number, a key and a text.
class ThreeValues {
 public:
  ThreeValues() {
    row.setMetaType(0, MetaInfo(MetaTypeColumn::number, 0));
    row.setMetaType(1, MetaInfo(MetaTypeColumn::key, 0));
  }
  const OneRow& of(int number) {
    buffer.reset();
    unsigned char** values = row.getAllColForWrite();
    values[0] = bytesFromDouble(&buffer, number, 0);
    values[1] = number % 2 == 0 ? nullptr : bytesFromKey(&buffer, static_cast<unsigned>(number));
    values[2] = number % 5 == 0 ? bytesOfNullText()
                                : bytesFromUtf8(&buffer, std::string(lengthOf(number), 'x'));
    return row;
  }
  bool is(int number) const {
    bool hasKey = false;
    bool isMissing = false;
    return row.colAsDouble(0, nullptr) == number &&
           row.colAsKey(1, &hasKey) ==
               (number % 2 == 0 ? kNullKey : static_cast<unsigned>(number)) &&
           row.colAsUtf8(2, &isMissing).size() == (number % 5 == 0 ? 0 : lengthOf(number)) &&
           isMissing == (number % 5 == 0);
  }
  unsigned char** values() { return row.getAllColForWrite(); }

 private:
  PinOutMetaData metaData = threeColumns();
  OneRow row{&metaData};
  RowBuffer buffer{1024};
};

struct TestReader {
  explicit TestReader(RowQueue& queue) : reader(queue) { reader.join(); }

  bool next() {
    ++taken;
    return reader.next(row.values());
  }
  // Of the row taken last.
  bool isIntact() const { return taken < 0 || hasReleased || row.is(taken); }

  RowQueue::Reader reader;
  ThreeValues row;
  int taken = -1;
  bool hasLeft = false;
  bool hasReleased = false;
};

TEST(RowQueue, GivesEveryReaderEveryRowAtItsPaceAndLeavesTheLastOneAlone) {
  for (int seed = 0; seed < 24; ++seed) {
    std::mt19937 dice(static_cast<unsigned>(seed));
    const auto below = [&dice](int end) {
      return static_cast<int>(dice() % static_cast<unsigned>(end));
    };
    ExecutionOptions options;
    options.queueMemoryBytes = seed % 3 == 0 ? 1 << 30 : seed % 3 == 1 ? 1 << 20 : 0;
    RowQueue queue(options);
    std::deque<TestReader> readers;
    for (int i = 0; i < 1 + seed % 5; ++i) {
      readers.emplace_back(queue);
    }
    ThreeValues pushed;
    int count = 0;
    for (int step = 0; step < 3000; ++step) {
      TestReader& one = readers[static_cast<std::size_t>(below(static_cast<int>(readers.size())))];
      if (below(3) == 0 && count < 500) {
        ASSERT_TRUE(queue.push(pushed.of(count++)));
      } else if (below(700) == 0) {
        one.reader.leave();
        one.hasLeft = true;
      } else if (one.hasLeft && below(20) == 0) {
        one.reader.release();
        one.hasReleased = true;
      } else if (below(9) == 0 || &one == &readers.front()) {  // the others lag
        for (int rows = below(40); rows > 0 && one.reader.hasRow(); --rows) {
          ASSERT_TRUE(one.next());
        }
      }
      for (const TestReader& reader : readers) {
        ASSERT_TRUE(reader.isIntact()) << "seed " << seed << " row " << reader.taken;
      }
    }
    for (TestReader& reader : readers) {
      while (reader.reader.hasRow()) {
        ASSERT_TRUE(reader.next());
        ASSERT_TRUE(reader.isIntact()) << "seed " << seed << " row " << reader.taken;
      }
      EXPECT_TRUE(reader.hasLeft || reader.taken == count - 1);
    }
    EXPECT_EQ(queue.bytesWaiting(), 0);
  }
}

// The offer of rows ahead is one of the batch that the reader stands in.
TEST(RowQueue, ShowsRowsAheadOfNumbersAlone) {
  PinOutMetaData numbers;
  numbers.setColumnCount(2);
  OneRow row(&numbers);
  row.setMetaType(0, MetaInfo(MetaTypeColumn::number, 0));
  row.setMetaType(1, MetaInfo(MetaTypeColumn::key, 0));
  RowBuffer buffer(64);
  RowQueue queue{ExecutionOptions()};
  RowQueue::Reader reader(queue);
  reader.join();
  constexpr int kRows = 5000;  // of several batches
  for (int i = 0; i < kRows; ++i) {
    buffer.reset();
    row.getAllColForWrite()[0] = bytesFromDouble(&buffer, i / 2.0, 0);
    row.getAllColForWrite()[1] = bytesFromKey(&buffer, static_cast<unsigned>(i));
    ASSERT_TRUE(queue.push(row));
  }
  EXPECT_EQ(reader.rowsAhead().count, 0u);  // no row was taken yet
  std::vector<double> values(kRows);
  std::vector<std::uint32_t> keys(kRows);
  for (int i = 0; i < kRows; ++i) {
    ASSERT_TRUE(reader.hasRow());
    ASSERT_TRUE(reader.next(row.getAllColForWrite()));
    const RowsAhead ahead = reader.rowsAhead();
    ASSERT_GE(ahead.count, 1u);
    const std::size_t last = ahead.count - 1;
    EXPECT_EQ(ahead.numbers(0, 0, ahead.count, values.data())[0], i / 2.0);
    EXPECT_EQ(values[last], (i + static_cast<double>(last)) / 2.0);
    EXPECT_EQ(ahead.keys(1, last, 1, keys.data())[0], static_cast<unsigned>(i) + last);
  }
}

TEST(RowQueue, AsksWhenTheDiskIsFull) {
  ExecutionOptions options;
  options.queueMemoryBytes = 0;
  RecordingHost host;
  host.retryFullDisk(3);
  RowQueue queue(options);
  RowQueue::Reader reader(queue);
  reader.join();
  ThreeValues rows;
  const FullDisk disk(100'000);
  int pushed = 1;
  while (pushed < 1000 && queue.push(rows.of(pushed))) {
    ++pushed;
  }
  EXPECT_LT(pushed, 1000);
  EXPECT_EQ(host.fullDiskFiles().size(), 4u);
  EXPECT_NE(queue.errorText().indexOf(QStringLiteral("No space left on device")), -1);
}

}  // namespace
}  // namespace kelvarin::testing
