// Every reader gets every row in order, from memory or disk, and the row that it took last stays
// what it is whatever happens to the queue.
#include <deque>
#include <random>

#include <gtest/gtest.h>

#include "host/contract/batch_collector.h"
#include "host/contract/batch_rows.h"
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

// Some rows as a batch; with others between them that do not count.
RowBatchPointer batchOf(int first, int count) {
  BatchCollector collector({MetaTypeColumn::number, MetaTypeColumn::key, MetaTypeColumn::text}, {});
  ThreeValues values;
  auto selection = std::make_shared<std::uint32_t[]>(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    collector.append(values.of(first / 2));  // is not selected
    collector.append(values.of(first + i));
    selection[i] = static_cast<std::uint32_t>(2 * i + 1);
  }
  const RowBatchPointer all = collector.take();
  return std::make_shared<RowBatch>(all->storedRows(), all->columns(), std::move(selection),
                                    static_cast<std::size_t>(count));
}

struct TestReader {
  explicit TestReader(RowQueue& queue) : reader(queue) { reader.join(); }

  bool next() {
    if (rows.rowsLeft() == 0) {
      rows.start(reader.next());
    }
    ++taken;
    rows.take(row.values());
    return rows.batch() != nullptr;
  }
  bool hasRow() const { return rows.rowsLeft() > 0 || reader.hasBatch(); }
  // Of the row taken last.
  bool isIntact() const { return taken < 0 || row.is(taken); }

  RowQueue::Reader reader;
  BatchRows rows;
  ThreeValues row;
  int taken = -1;
  bool hasLeft = false;
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
    int count = 0;
    for (int step = 0; step < 3000; ++step) {
      TestReader& one = readers[static_cast<std::size_t>(below(static_cast<int>(readers.size())))];
      if (below(3) == 0 && count < 500) {
        const int rows = 1 + below(7);
        ASSERT_TRUE(queue.push(batchOf(count, rows)));
        count += rows;
      } else if (below(700) == 0) {
        one.reader.leave();
        one.hasLeft = true;
      } else if (below(9) == 0 || &one == &readers.front()) {  // the others lag
        for (int rows = below(40); rows > 0 && one.hasRow(); --rows) {
          ASSERT_TRUE(one.next());
        }
      }
      for (const TestReader& reader : readers) {
        ASSERT_TRUE(reader.isIntact()) << "seed " << seed << " row " << reader.taken;
      }
    }
    for (TestReader& reader : readers) {
      while (reader.hasRow()) {
        ASSERT_TRUE(reader.next());
        ASSERT_TRUE(reader.isIntact()) << "seed " << seed << " row " << reader.taken;
      }
      EXPECT_TRUE(reader.hasLeft || reader.taken == count - 1);
    }
    EXPECT_EQ(queue.rowsWaiting(), 0);
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
  const FullDisk disk(100'000);
  int pushed = 1;
  while (pushed < 1000 && queue.push(batchOf(pushed, 1))) {
    ++pushed;
  }
  EXPECT_LT(pushed, 1000);
  EXPECT_EQ(host.fullDiskFiles().size(), 4u);
  EXPECT_NE(queue.errorText().indexOf(QStringLiteral("No space left on device")), -1);
}

}  // namespace
}  // namespace kelvarin::testing
