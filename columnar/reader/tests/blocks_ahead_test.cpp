// Reading ahead: the order of events, how many are read ahead, and blocks that are filled again.
#include <gtest/gtest.h>

#include <atomic>

#include "columnar/reader/blocks_ahead.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kRowsOfBlock = 5000;

ReadEvent blockAt(std::uint64_t row, std::uint64_t rows = kRowsOfBlock) {
  ReadEvent event;
  event.kind = ReadEvent::Kind::block;
  event.firstRow = row;
  event.lastRow = row + rows - 1;
  event.block = std::make_unique<DecodedBlock>();
  return event;
}

TEST(BlocksAhead, ReturnsEventsInOrderAndNothingAfterTheLast) {
  constexpr std::uint64_t kBlocks = 600;
  for (const int blocksAhead : {-1, 0, 1, 5}) {
    for (const std::uint64_t rows : {std::uint64_t{1}, kRowsOfBlock}) {
      std::uint64_t made = 0;
      BlocksAhead events(
          [&](std::unique_ptr<DecodedBlock>) {
            return made < kBlocks ? blockAt(rows * made++, rows) : ReadEvent{};
          },
          blocksAhead);
      for (std::uint64_t block = 0; block < kBlocks; ++block) {
        ReadEvent event = events.next();
        ASSERT_EQ(event.kind, ReadEvent::Kind::block);
        EXPECT_EQ(event.firstRow, rows * block);
        events.recycle(std::move(event.block));
      }
      EXPECT_EQ(events.next().kind, ReadEvent::Kind::end);
      EXPECT_EQ(events.next().kind, ReadEvent::Kind::end);
    }
  }
}

TEST(BlocksAhead, MakesNoMoreThanTheBlocksAhead) {
  std::atomic<int> made = 0;
  {
    BlocksAhead events(
        [&](std::unique_ptr<DecodedBlock>) { return blockAt(static_cast<std::uint64_t>(made++)); },
        3);
    for (int taken = 1; taken <= 50; ++taken) {
      (void)events.next();
      EXPECT_LE(made, taken + 3);
    }
  }
  EXPECT_LE(made, 53);
}

TEST(BlocksAhead, FillsTheSameBlocksAgain) {
  std::atomic<int> created = 0;
  BlocksAhead events(
      [&](std::unique_ptr<DecodedBlock> spare) {
        created += spare ? 0 : 1;
        ReadEvent event = blockAt(0);
        event.block = spare ? std::move(spare) : std::make_unique<DecodedBlock>();
        return event;
      },
      2);
  for (int i = 0; i < 200; ++i) {
    events.recycle(events.next().block);
  }
  EXPECT_LE(created, 4);
}

}  // namespace

}  // namespace kelvarin
