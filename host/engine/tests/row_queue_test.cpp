// Rows in memory and on disk keep their order and their bytes.
#include <gtest/gtest.h>

#include "host/engine/row_queue.h"
#include "host/testing/full_disk.h"
#include "host/testing/recording_host.h"

namespace kelvarin::testing {
namespace {

// Rows of a number, a key and a text.
class Rows {
 public:
  Rows() {
    row.setMetaType(0, MetaInfo(MetaTypeColumn::number, 0));
    row.setMetaType(1, MetaInfo(MetaTypeColumn::key, 0));
  }
  const OneRow& of(int number, std::size_t textLength) {
    buffer.reset();
    unsigned char** values = row.getAllColForWrite();
    values[0] = bytesFromDouble(&buffer, number, 0);
    values[1] = number % 2 == 0 ? nullptr : bytesFromKey(&buffer, static_cast<unsigned>(number));
    values[2] =
        number % 5 == 0 ? bytesOfNullText() : bytesFromUtf8(&buffer, std::string(textLength, 'x'));
    return row;
  }
  // True when the row popped next is the one of() made.
  ::testing::AssertionResult next(RowQueue& queue, int number, std::size_t textLength) {
    if (!queue.pop(row.getAllColForWrite())) {
      return ::testing::AssertionFailure() << queue.errorText().toStdString();
    }
    bool hasKey = false;
    bool isMissing = false;
    const bool isRight =
        row.colAsDouble(0, nullptr) == number &&
        row.colAsKey(1, &hasKey) == (number % 2 == 0 ? kNullKey : static_cast<unsigned>(number)) &&
        row.colAsUtf8(2, &isMissing).size() == (number % 5 == 0 ? 0 : textLength) &&
        isMissing == (number % 5 == 0);
    return isRight ? ::testing::AssertionSuccess()
                   : ::testing::AssertionFailure() << "row " << number;
  }

 private:
  PinOutMetaData metaData = [] {
    PinOutMetaData three;
    three.setColumnCount(3);
    return three;
  }();
  OneRow row{&metaData};
  RowBuffer buffer{1024};
};

// Every seventh text is longer than a batch.
std::size_t lengthOf(int number) {
  return number % 7 == 0 ? 300'000 : static_cast<std::size_t>(number % 100);
}

TEST(RowQueue, KeepsOrderAndBytesInMemoryAndOnDisk) {
  for (const long long memory : {1LL << 30, 1LL << 20, 0LL}) {
    ExecutionOptions options;
    options.queueMemoryBytes = memory;
    RowQueue queue(options);
    Rows rows;
    int pushed = 0;
    int popped = 0;
    // The queue grows, shrinks to nothing and grows again.
    for (const int target : {400, 30, 250, 0, 120, 0}) {
      while (pushed - popped < target) {
        ASSERT_TRUE(queue.push(rows.of(pushed, lengthOf(pushed))));
        ++pushed;
      }
      while (pushed - popped > target) {
        ASSERT_TRUE(rows.next(queue, popped, lengthOf(popped)));
        ++popped;
      }
      EXPECT_EQ(queue.rowCount(), target);
    }
    EXPECT_EQ(queue.byteCount(), 0);
  }
}

TEST(RowQueue, StartsAnewWhenCleared) {
  ExecutionOptions options;
  options.queueMemoryBytes = 0;
  RowQueue queue(options);
  Rows rows;
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 50; ++i) {
      ASSERT_TRUE(queue.push(rows.of(i, lengthOf(i))));
    }
    EXPECT_TRUE(rows.next(queue, 0, lengthOf(0)));
    queue.clear();
    EXPECT_TRUE(queue.isEmpty());
  }
}

TEST(RowQueue, AsksWhenTheDiskIsFull) {
  ExecutionOptions options;
  options.queueMemoryBytes = 0;
  RecordingHost host;
  host.retryFullDisk(3);
  RowQueue queue(options);
  Rows rows;
  const FullDisk disk(100'000);
  int pushed = 0;
  while (pushed < 1000 && queue.push(rows.of(pushed, 1000))) {
    ++pushed;
  }
  EXPECT_LT(pushed, 1000);
  EXPECT_EQ(host.fullDiskFiles().size(), 4u);
  EXPECT_NE(queue.errorText().indexOf(QStringLiteral("No space left on device")), -1);
}

}  // namespace
}  // namespace kelvarin::testing
