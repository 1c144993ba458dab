// Reading of whole files: rows, chosen columns, filtered blocks, and files whose writer has not
// finished.
#include <gtest/gtest.h>

#include <cmath>

#include "columnar/format/file_names.h"
#include "columnar/reader/tests/read_rows.h"

namespace kelvarin::testing {

namespace {

const std::vector<MadeColumn> kColumns{
    {"id", 'K', 0, StorageCode::ascendingKey}, {"price", 'F', 0}, {"name", 'U', 1}};

std::vector<Values> someRows(int count) {
  std::vector<Values> rows;
  for (int i = 0; i < count; ++i) {
    rows.push_back({i * 3, i % 5 == 2 ? Value(nullptr) : Value(i / 4.0),
                    i % 7 == 3   ? Value(nullptr)
                    : i % 7 == 4 ? Value("")
                                 : Value("n" + std::to_string(i % 6))});
  }
  return rows;
}

std::vector<Values> allOf(const ReadResult& result) {
  std::vector<Values> rows;
  for (const auto& [number, row] : result.rows) {
    EXPECT_EQ(number, rows.size());
    rows.push_back(row);
  }
  return rows;
}

TEST(BlockReader, ReadsTheRowsOfEveryShapeOfFile) {
  for (const int count : {1, 3, 4, 5, 13, 300}) {
    const std::vector<Values> rows = someRows(count);
    for (const std::size_t blocksInRecord : {1, 2, 1000}) {
      for (const std::uint32_t rowsInBlock : {1u, 4u, 130u}) {
        FileShape shape{.rowsInBlock = rowsInBlock, .blocksInRecord = blocksInRecord};
        const ReadResult result = readRows(makeFile(kColumns, rows, shape));
        EXPECT_EQ(allOf(result), rows);
        EXPECT_TRUE(result.damage.empty());
      }
    }
  }
}

TEST(BlockReader, ReadsOnlyTheColumnsAskedFor) {
  const std::vector<Values> rows = someRows(10);
  MemoryFiles files = makeFile(kColumns, rows);
  files.remove(sideFileName(FileShape{}.name, 0));
  const ReadResult names = readRows(files, std::vector<std::size_t>{2});
  ASSERT_EQ(names.rows.size(), 10u);
  EXPECT_EQ(names.rows.at(6), Values{rows[6][2]});
  EXPECT_EQ(readRows(files).damage, std::vector<std::string>{"cannot open made.000.cs_kelvarin"});

  const MemoryFiles whole = makeFile(kColumns, rows);
  const ReadResult turned = readRows(whole, std::vector<std::size_t>{2, 0});
  EXPECT_EQ(turned.rows.at(9), (Values{rows[9][2], rows[9][0]}));
}

TEST(BlockReader, SkipsBlocksThatAreNotWanted) {
  const std::vector<Values> rows = someRows(14);
  const auto wantsLaterKeys = [](const GelFile& file, const BlockInfo& block) {
    KeyStatistics keys;
    EXPECT_TRUE(file.descriptorLayout().readStatistics(block.descriptor, 0, keys));
    EXPECT_EQ(keys.low, block.firstRow * 3);
    return keys.high >= 33;
  };
  const ReadResult result =
      readRows(makeFile(kColumns, rows, {.blocksInRecord = 2}), {}, wantsLaterKeys);
  EXPECT_EQ(result.rows.size(), 6u);
  EXPECT_EQ(result.rows.at(13), rows[13]);
  EXPECT_TRUE(result.damage.empty());
}

TEST(BlockReader, ReadsWhatAKilledWriterLeft) {
  const std::vector<Values> rows = someRows(9);
  FileShape shape = kKilledWriter;
  shape.blocksInRecord = 1;
  MemoryFiles files = makeFile(kColumns, rows, shape);
  const auto refused = GelFile::open(shape.name, IncompleteFiles::refuse, files.opener());
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().problem, OpenFailure::Problem::incomplete);
  // Chunks whose descriptors never came to the disk.
  files[sideFileName(shape.name, 0)] += std::string(5000, 'x');
  files[sideFileName(shape.name, 1)] += std::string(3, '\0');
  const ReadResult result = readRows(files);
  EXPECT_EQ(allOf(result), rows);
  EXPECT_TRUE(result.damage.empty());
  // The writer closed it after a failed run.
  shape.hasFinalHeader = shape.hasEndMarker = true;
  EXPECT_EQ(allOf(readRows(makeFile(kColumns, rows, shape))), rows);
}

}  // namespace

}  // namespace kelvarin::testing
