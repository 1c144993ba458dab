// Bytes that tasks write: all of them in their order, up to a full disk, and none after a drop.
#include "host/tables/files/output_queue.h"

#include <algorithm>
#include <future>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "host/tables/files/tests/table_folder.h"
#include "host/testing/full_disk.h"
#include "host/testing/recording_host.h"

namespace kelvarin {

using testing::FullDisk;
using testing::RecordingHost;
using testing::Strings;
using testing::TableFolder;

namespace {

class OutputQueueTest : public ::testing::Test {
 protected:
  void open(int threads) {
    ASSERT_TRUE(m_file.open(QString::fromStdString(m_path)));
    m_pool = std::make_unique<TaskPool>(threads);
    m_queue.start(m_pool.get(), nullptr);
  }
  // Its bytes say which one it is; some are longer than what may wait.
  Status<QString> append(int number) {
    const std::size_t size = number % 100 == 99 ? 5 << 20 : 1 + 997 * number % 60000;
    auto bytes = std::make_shared<std::string>(size, static_cast<char>('a' + number % 26));
    m_expected += *bytes;
    m_owners.push_back(bytes);
    const std::string_view view = *bytes;
    return m_queue.append(std::move(bytes), view);
  }
  bool areOwnersGone() const {
    return std::all_of(m_owners.begin(), m_owners.end(),
                       [](const auto& owner) { return owner.expired(); });
  }

  RecordingHost m_host;
  TableFolder m_folder;
  const std::string m_path = m_folder.path("out");
  std::string m_expected;
  std::vector<std::weak_ptr<std::string>> m_owners;
  OutputFile m_file;
  std::unique_ptr<TaskPool> m_pool;
  OutputQueue m_queue{m_file};
};

TEST_F(OutputQueueTest, KeepsTheOrder) {
  for (const int threads : {1, 3}) {
    m_expected.clear();
    open(threads);
    for (int number = 0; number < 250; ++number) {
      ASSERT_TRUE(append(number));
    }
    ASSERT_TRUE(m_queue.finish());
    EXPECT_TRUE(areOwnersGone());
    ASSERT_TRUE(m_file.complete());
    ASSERT_TRUE(m_file.publish());
    EXPECT_TRUE(m_folder.read("out") == m_expected);
  }
}

TEST_F(OutputQueueTest, AFullDiskEndsItInTheMidst) {
  const FullDisk disk(3'000'000);
  m_host.retryFullDisk(2);
  open(2);
  int number = 0;
  while (append(number)) {
    ASSERT_LT(++number, 1000);
  }
  const Status<QString> status = m_queue.finish();
  ASSERT_FALSE(status);
  EXPECT_EQ(status.error().toStdString(), "The file '" + m_path +
                                              "' cannot be written: No space left on device. "
                                              "What it held before is unchanged.");
  EXPECT_EQ(m_host.fullDiskFiles(), Strings(3, m_path));
  EXPECT_EQ(disk.refusals(), 3);
  EXPECT_TRUE(m_queue.drop()) << "finish() has said it";
  EXPECT_TRUE(areOwnersGone());
  m_file.discard();
  EXPECT_EQ(m_folder.listing(), "");
}

TEST_F(OutputQueueTest, ADropTellsOfAWriteThatHasFailedMeanwhile) {
  const FullDisk disk(1000);
  open(2);
  ASSERT_TRUE(append(3));  // of 2992 bytes
  while (disk.refusals() == 0) {
    std::this_thread::yield();
  }
  EXPECT_FALSE(m_queue.drop());
  EXPECT_TRUE(m_queue.drop());
}

TEST_F(OutputQueueTest, WhatIsDroppedIsNotWritten) {
  open(1);
  class Blocker final : public PoolTask {
   public:
    void run() override {
      begun.set_value();
      mayEnd.get_future().wait();
    }
    std::promise<void> begun;
    std::promise<void> mayEnd;
  };
  const auto blocker = std::make_shared<Blocker>();
  m_pool->submit(blocker);
  blocker->begun.get_future().wait();
  ASSERT_TRUE(append(1));
  EXPECT_TRUE(m_queue.drop());
  EXPECT_TRUE(areOwnersGone());
  blocker->mayEnd.set_value();
  m_pool.reset();
  EXPECT_EQ(m_file.bytesWritten(), 0);
}

}  // namespace

}  // namespace kelvarin
