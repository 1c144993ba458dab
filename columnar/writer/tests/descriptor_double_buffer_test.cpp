#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "columnar/writer/descriptor_double_buffer.h"
#include "columnar/writer/thread_permits.h"

namespace kelvarin {

TEST(DescriptorDoubleBuffer, ARecordHasTheSlicesOfAllWorkersAndTheLastOneWhatIsLeft) {
  constexpr std::size_t kWorkers = 3;
  constexpr std::uint64_t kBlocks = 1003;
  constexpr std::size_t kInRecord = 10;
  DescriptorDoubleBuffer buffer(kWorkers, kWorkers, kInRecord);
  std::vector<std::size_t> records;
  std::uint64_t nextBlock = 0;
  std::thread writer([&] {
    while (const auto descriptors = buffer.awaitRecord()) {
      records.push_back(descriptors->size() / kWorkers);
      for (std::size_t i = 0; i < descriptors->size(); ++i) {
        EXPECT_EQ((*descriptors)[i],
                  static_cast<unsigned char>((nextBlock + i / kWorkers) * (i % kWorkers + 1)));
      }
      nextBlock += descriptors->size() / kWorkers;
      buffer.recordWritten();
    }
  });
  std::vector<std::thread> workers;
  for (std::size_t worker = 0; worker < kWorkers; ++worker) {
    workers.emplace_back([&, worker] {
      for (std::uint64_t block = 0; block < kBlocks; ++block) {
        unsigned char* descriptor = buffer.awaitDescriptor(block);
        ASSERT_NE(descriptor, nullptr);
        descriptor[worker] = static_cast<unsigned char>(block * (worker + 1));
        buffer.finishBlock(worker);
      }
    });
  }
  for (std::thread& worker : workers) {
    worker.join();
  }
  buffer.finish();
  writer.join();
  ASSERT_EQ(records.size(), 101u);
  EXPECT_EQ(records.front(), kInRecord);
  EXPECT_EQ(records.back(), 3u);
}

TEST(DescriptorDoubleBuffer, AWorkerTwoRecordsAheadWaitsUntilItIsStopped) {
  DescriptorDoubleBuffer buffer(1, 1, 2);
  for (std::uint64_t block = 0; block < 4; ++block) {
    EXPECT_NE(buffer.awaitDescriptor(block), nullptr);
    buffer.finishBlock(0);
  }
  std::thread stopper([&] { buffer.stop(); });
  EXPECT_EQ(buffer.awaitDescriptor(4), nullptr);
  EXPECT_FALSE(buffer.awaitRecord().has_value());
  stopper.join();
}

TEST(ThreadPermits, NoMoreThanAllowedAtOneTime) {
  ThreadPermits permits(2);
  std::atomic<int> inside = 0;
  std::atomic<int> most = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 6; ++i) {
    threads.emplace_back([&] {
      for (int k = 0; k < 200; ++k) {
        const ThreadPermits::Permit permit(permits);
        const int now = ++inside;
        int seen = most;
        while (seen < now && !most.compare_exchange_weak(seen, now)) {
        }
        --inside;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_LE(most, 2);
}

}  // namespace kelvarin
