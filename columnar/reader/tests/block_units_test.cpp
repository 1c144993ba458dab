// Units of blocks: large blocks come in several batches that threads decode together, small ones
// come together, and damage stands between the rows that it is found between.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "columnar/format/file_names.h"
#include "columnar/reader/tests/read_rows.h"
#include "host/contract/late_texts.h"

namespace kelvarin::testing {

namespace {

const std::vector<MadeColumn> kColumns{
    {"key", 'K'}, {"same", 'F'}, {"number", 'F'}, {"same text", 'U'}, {"text", 'U'}};

std::vector<Values> someRows(int count) {
  std::vector<Values> rows;
  for (int i = 0; i < count; ++i) {
    rows.push_back({i, 2.5, i / 8.0, "always", "t" + std::to_string(i % 300)});
  }
  return rows;
}

struct ReadFile {
  std::unique_ptr<GelFile> file;
  std::unique_ptr<BlockUnits> units;
  std::vector<std::unique_ptr<BlockUnit>> all;

  explicit ReadFile(const MemoryFiles& files) {
    file = std::move(*GelFile::open(FileShape{}.name, IncompleteFiles::accept, files.opener()));
    units = std::move(*BlockUnits::open(*file, file->columnsInRowOrder()));
    while (auto unit = units->next()) {
      all.push_back(std::move(unit));
    }
  }
};

// Parses the units on some threads, the last ones first.
void parseTogether(std::vector<std::unique_ptr<BlockUnit>>& units) {
  std::atomic<std::size_t> taken = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&] {
      for (std::size_t next; (next = taken++) < units.size();) {
        units[units.size() - 1 - next]->parse();
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

std::vector<Values> rowsOf(std::vector<std::unique_ptr<BlockUnit>>& units) {
  std::vector<Values> rows;
  for (const auto& unit : units) {
    for (const ReadEvent& event : unit->events()) {
      EXPECT_EQ(event.kind, ReadEvent::Kind::rows);
      EXPECT_EQ(event.firstRow, rows.size());
      const std::vector<Values> batch = testing::rowsOf(event.batch);
      rows.insert(rows.end(), batch.begin(), batch.end());
      EXPECT_EQ(event.lastRow + 1, rows.size());
    }
  }
  return rows;
}

// Blocks that are joined have their dictionaries one after the other.
TEST(BlockUnits, TextsThatRepeatHaveADictionary) {
  for (const int rowsInBlock : {50'000, 3000, 400}) {
    ReadFile read(makeFile(
        {{"same", 'U'}, {"city", 'U'}, {"date", 'U'}, {"row", 'U'}},
        [] {
          std::vector<Values> rows;
          for (int i = 0; i < 6000; ++i) {
            const std::string day = std::to_string(10 + i * 7 % 11);
            rows.push_back({"always",
                            i % 9 == 0 ? Value(nullptr) : Value("c" + std::to_string(i % 5)),
                            "2020-03-" + day, "r" + std::to_string(i)});
          }
          return rows;
        }(),
        {.rowsInBlock = static_cast<std::uint32_t>(rowsInBlock)}));
    parseTogether(read.all);
    EXPECT_EQ(rowsOf(read.all).size(), 6000u);
    for (const auto& unit : read.all) {
      const RowBatch& batch = *unit->events()[0].batch;
      for (const std::size_t column : {0, 1, 2}) {
        EXPECT_TRUE(batch.column(column).dictionary().isThere()) << rowsInBlock << " " << column;
      }
      EXPECT_FALSE(batch.column(3).dictionary().isThere());
    }
  }
}

// The first block is compared with its statistics, so its texts are made.
TEST(BlockUnits, TextsWithAShapeMayComeLate) {
  std::vector<Values> rows;
  for (int i = 0; i < 9000; ++i) {
    rows.push_back({"INV-" + std::to_string(i * 7919 % 1'000'003) + "/" + std::to_string(i % 97)});
  }
  const MemoryFiles files = makeFile({{"invoice", 'U'}}, rows, {.rowsInBlock = 3000});
  ReadFile read(files);
  const auto units = BlockUnits::open(*read.file, {0});
  std::vector<Values> seen;
  std::vector<bool> areLate;
  while (const auto unit = (*units)->next(TextForm::late)) {
    unit->parse();
    const RowBatchPointer batch = unit->events()[0].batch;
    areLate.push_back(batch->column(0).isLate());
    for (const std::size_t begin : {0, 1000}) {
      const RowBatchPointer part = batch->slice(begin, begin == 0 ? 1000 : batch->rowCount());
      const std::vector<Values> made = testing::rowsOf(withTexts(part));
      seen.insert(seen.end(), made.begin(), made.end());
    }
  }
  EXPECT_EQ(seen, rows);
  EXPECT_EQ(areLate, (std::vector<bool>{false, true, false}));
}

TEST(BlockUnits, AHugeBlockComesInBatchesThatThreadsDecodeTogether) {
  constexpr int kRows = 50'000;
  const std::vector<Values> rows = someRows(kRows);
  ReadFile read(makeFile(kColumns, rows, {.rowsInBlock = kRows}));
  EXPECT_EQ(read.all.size(), read.units->unitsOfBlock());
  EXPECT_GE(read.all.size(), 4u);
  parseTogether(read.all);
  EXPECT_EQ(rowsOf(read.all), rows);
  EXPECT_EQ(read.all[0]->events()[0].blocks, 1u);
  EXPECT_EQ(read.all[1]->events()[0].blocks, 0u);
}

TEST(BlockUnits, DamageOfAHugeBlockIsOneEvent) {
  constexpr int kRows = 50'000;
  MemoryFiles files = makeFile(kColumns, someRows(kRows + 3), {.rowsInBlock = kRows});
  std::string& side = files[sideFileName(FileShape{}.name, 0)];
  side[side.size() / 3] ^= 1;
  ReadFile read(files);
  parseTogether(read.all);
  std::vector<ReadEvent> events;
  for (const auto& unit : read.all) {
    events.insert(events.end(), unit->events().begin(), unit->events().end());
  }
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].kind, ReadEvent::Kind::corrupted);
  EXPECT_EQ(events[0].lastRow, kRows - 1u);
  EXPECT_EQ(events[1].batch->rowCount(), 3u);
}

TEST(BlockUnits, SmallBlocksComeTogether) {
  const std::vector<Values> rows = someRows(5000);
  for (const std::uint32_t rowsInBlock : {1u, 7u, 700u}) {
    ReadFile read(makeFile(kColumns, rows, {.rowsInBlock = rowsInBlock}));
    EXPECT_LE(read.all.size(), rowsInBlock == 1 ? 20u : 3u);
    parseTogether(read.all);
    EXPECT_EQ(rowsOf(read.all), rows);
    std::uint64_t blocks = 0;
    for (const auto& unit : read.all) {
      EXPECT_EQ(unit->batch(), unit->events()[0].batch);
      blocks += unit->events()[0].blocks;
    }
    EXPECT_EQ(blocks, (rows.size() + rowsInBlock - 1) / rowsInBlock);
  }
}

TEST(BlockUnits, DamageStandsBetweenTheRowsOfSmallBlocks) {
  MemoryFiles files = makeFile(kColumns, someRows(40));
  std::string& side = files[sideFileName(FileShape{}.name, 0)];
  side[side.size() / 2] ^= 1;
  ReadFile read(files);
  ASSERT_EQ(read.all.size(), 1u);
  read.all[0]->parse();
  const std::vector<ReadEvent>& events = read.all[0]->events();
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(read.all[0]->batch(), events[0].batch);
  EXPECT_EQ(events[1].kind, ReadEvent::Kind::corrupted);
  EXPECT_EQ(events[1].firstRow, events[0].lastRow + 1);
  EXPECT_EQ(events[1].lastRow + 1, events[2].firstRow);
  EXPECT_EQ(events[2].lastRow, 39u);
}

}  // namespace

}  // namespace kelvarin::testing
