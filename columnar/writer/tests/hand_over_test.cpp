#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "columnar/writer/block_hand_over.h"
#include "columnar/writer/descriptor_exchange.h"
#include "columnar/writer/thread_permits.h"

namespace kelvarin {

TEST(BlockHandOver, EveryBlockArrivesOnceAndInOrder) {
  BlockHandOver handOver;
  std::uint64_t buffers[BlockHandOver::kBuffers] = {};
  std::uint64_t received = 0;
  std::thread worker([&] {
    while (const auto block = handOver.awaitFilled()) {
      EXPECT_EQ(*block, received);
      EXPECT_EQ(buffers[*block % BlockHandOver::kBuffers], *block);
      ++received;
      handOver.release();
    }
  });
  for (std::uint64_t block = 0; block < 2000; ++block) {
    ASSERT_TRUE(handOver.awaitFree());
    buffers[block % BlockHandOver::kBuffers] = block;
    handOver.handOver();
  }
  EXPECT_TRUE(handOver.awaitReleased(1999));
  handOver.finish();
  worker.join();
  EXPECT_EQ(received, 2000u);
}

TEST(BlockHandOver, StoppingEndsEveryWait) {
  BlockHandOver handOver;
  handOver.handOver();
  handOver.handOver();
  std::thread stopper([&] { handOver.stop(); });
  EXPECT_FALSE(handOver.awaitFree());
  EXPECT_FALSE(handOver.awaitReleased(1));
  EXPECT_EQ(handOver.awaitFilled(), std::nullopt);
  stopper.join();
}

TEST(DescriptorExchange, ARecordHasTheSlicesOfAllWorkersAndTheLastOneWhatIsLeft) {
  constexpr std::size_t kWorkers = 3;
  constexpr std::uint64_t kBlocks = 1003;
  constexpr std::size_t kInRecord = 10;
  DescriptorExchange exchange(kWorkers, kWorkers, kInRecord);
  std::vector<std::size_t> records;
  std::uint64_t nextBlock = 0;
  std::thread writer([&] {
    while (const auto descriptors = exchange.awaitRecord()) {
      records.push_back(descriptors->size() / kWorkers);
      for (std::size_t i = 0; i < descriptors->size(); ++i) {
        EXPECT_EQ((*descriptors)[i],
                  static_cast<unsigned char>((nextBlock + i / kWorkers) * (i % kWorkers + 1)));
      }
      nextBlock += descriptors->size() / kWorkers;
      exchange.recordWritten();
    }
  });
  std::vector<std::thread> workers;
  for (std::size_t worker = 0; worker < kWorkers; ++worker) {
    workers.emplace_back([&, worker] {
      for (std::uint64_t block = 0; block < kBlocks; ++block) {
        unsigned char* descriptor = exchange.awaitRoom(block);
        ASSERT_NE(descriptor, nullptr);
        descriptor[worker] = static_cast<unsigned char>(block * (worker + 1));
        exchange.finishBlock(worker);
      }
    });
  }
  for (std::thread& worker : workers) {
    worker.join();
  }
  exchange.finish();
  writer.join();
  ASSERT_EQ(records.size(), 101u);
  EXPECT_EQ(records.front(), kInRecord);
  EXPECT_EQ(records.back(), 3u);
}

TEST(DescriptorExchange, AWorkerTwoRecordsAheadWaitsUntilItIsStopped) {
  DescriptorExchange exchange(1, 1, 2);
  for (std::uint64_t block = 0; block < 4; ++block) {
    EXPECT_NE(exchange.awaitRoom(block), nullptr);
    exchange.finishBlock(0);
  }
  std::thread stopper([&] { exchange.stop(); });
  EXPECT_EQ(exchange.awaitRoom(4), nullptr);
  EXPECT_FALSE(exchange.awaitRecord().has_value());
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
