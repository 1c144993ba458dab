// Threads that hand over blocks: order, room, and leaving on either side.
#include <gtest/gtest.h>

#include <atomic>

#include "columnar/reader/blocks_ahead.h"

namespace kelvarin {

namespace {

ReadEvent blockAt(std::uint64_t row) {
  ReadEvent event;
  event.kind = ReadEvent::Kind::block;
  event.firstRow = row;
  event.block = std::make_unique<DecodedBlock>();
  return event;
}

TEST(HandOver, TellsTheEndAfterEverythingWasTaken) {
  HandOver<int> things(2);
  std::thread maker([&] {
    for (int i = 0; i < 1000 && things.waitForRoom(); ++i) {
      things.put(i);
    }
    things.finish();
  });
  for (int i = 0; i < 1000; ++i) {
    EXPECT_EQ(things.take(), i);
  }
  EXPECT_EQ(things.take(), std::nullopt);
  maker.join();
}

TEST(BlocksAhead, GivesEventsInOrderAndNothingAfterTheLast) {
  for (const int blocksAhead : {-1, 0, 1, 5}) {
    std::uint64_t made = 0;
    BlocksAhead events(
        [&](std::unique_ptr<DecodedBlock>) { return made < 20 ? blockAt(made++) : ReadEvent{}; },
        blocksAhead);
    for (std::uint64_t row = 0; row < 20; ++row) {
      ReadEvent event = events.next();
      ASSERT_EQ(event.kind, ReadEvent::Kind::block);
      EXPECT_EQ(event.firstRow, row);
      events.giveBack(std::move(event.block));
    }
    EXPECT_EQ(events.next().kind, ReadEvent::Kind::end);
    EXPECT_EQ(events.next().kind, ReadEvent::Kind::end);
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
    events.giveBack(events.next().block);
  }
  EXPECT_LE(created, 4);
}

}  // namespace

}  // namespace kelvarin
