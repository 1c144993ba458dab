#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "columnar/format/block_descriptor.h"
#include "columnar/format/checksum.h"
#include "columnar/format/file_header.h"
#include "columnar/format/file_names.h"

namespace kelvarin {

namespace {

using ByteList = std::vector<unsigned char>;

// The definition, a word at a time.
std::uint32_t checksumByWords(ByteList bytes) {
  bytes.resize((bytes.size() + 7) / 8 * 8);
  std::uint64_t first = 0;
  std::uint64_t second = 0;
  const auto fold = [](std::uint64_t sum) { return (sum & 0xFFFF) + (sum >> 16); };
  for (std::size_t i = 0; i < bytes.size(); i += 2) {
    first = fold(first + bytes[i] + 256u * bytes[i + 1]);
    second = fold(second + first);
  }
  return static_cast<std::uint32_t>(fold(second) << 16 | fold(first));
}

GelColumn column(GelType type, StorageCode storage, std::uint32_t position, int set,
                 const char* name) {
  return {.name = name,
          .type = type,
          .typeArgument = 0,
          .storage = storage,
          .inputPosition = position,
          .columnSet = set};
}

TextStatistics statisticsBetween(std::string_view low, std::string_view high) {
  return {.hasNull = false, .low = TextBound::of(low), .high = TextBound::of(high)};
}

}  // namespace

TEST(FileNames, SideFilesOfMainFiles) {
  EXPECT_EQ(sideFileName("sales.cgel_kelvarin", 0), "sales.000.cs_kelvarin");
  EXPECT_EQ(sideFileName("x.dat", 12), "x.012.cs");
  EXPECT_EQ(sideFileName("a.b/plain", 254), "a.b/plain.254.cs");
  EXPECT_EQ(sideFileName("a.b\\plain", 1), "a.b\\plain.001.cs");
  EXPECT_EQ(sideFileName("kelvarin/x.dat", 1), "kelvarin/x.001.cs");
  EXPECT_EQ(sideFileName("KELVARIN.dat", 1), "KELVARIN.001.cs");
}

TEST(FileNames, OnlyItsOwnSideFilesBelongToAMainFile) {
  const std::string main = "d/sales.cgel_kelvarin";
  EXPECT_TRUE(isSideFileName(main, "d/sales.000.cs_kelvarin"));
  for (const char* other :
       {"d/sales.cgel_kelvarin", "d/sales.abc.cs_kelvarin", "d/sales.0000.cs_kelvarin",
        "d/sales.2020.000.cs_kelvarin", "d/sales2.000.cs_kelvarin", "d/sales.000.cs",
        "sales.000.cs_kelvarin", "d/salesX000.cs_kelvarin"}) {
    EXPECT_FALSE(isSideFileName(main, other)) << other;
  }
}

TEST(Checksum, FollowsTheDefinitionForEveryLengthAndOnEveryProcessor) {
  EXPECT_EQ(checksum({}), 0u);
  const ByteList one = {1};
  EXPECT_EQ(checksum(one), 0x00040001u);  // one word of 1, and three of padding
  const ByteList words = {1, 0, 2, 0, 0xFF, 0xFF, 0, 0};
  EXPECT_EQ(checksum(words), 0x000A0003u);
  const ByteList ones(8, 0xFF);
  EXPECT_EQ(checksum(ones), 0xFFFFFFFFu);  // folded, never 0
  std::mt19937 random(1);
  for (std::size_t size = 0; size < 400; ++size) {
    ByteList bytes(size);
    std::generate(bytes.begin(), bytes.end(), std::ref(random));
    EXPECT_EQ(checksum(bytes), checksumByWords(bytes)) << size;
    EXPECT_EQ(portableChecksum(bytes), checksumByWords(bytes)) << size;
  }
  for (const unsigned char fill : {0x00, 0xFF}) {
    ByteList bytes(1'000'003, fill);
    EXPECT_EQ(checksum(bytes), checksumByWords(bytes));
    EXPECT_EQ(portableChecksum(bytes), checksumByWords(bytes));
    bytes[777'777] ^= 1;
    EXPECT_EQ(checksum(bytes), checksumByWords(bytes));
  }
}

TEST(MetadataBlock, GoldenBytes) {
  MetadataBlock metadata;
  metadata.rowsInBlock = 5000;
  metadata.columnSetCount = 1;
  metadata.columns = {column(GelType::key, StorageCode::ascendingKey, 1, 0, "id"),
                      column(GelType::number, StorageCode::raw, 0, 0, "p")};
  ByteList bytes;
  ByteWriter writer(bytes);
  writeMetadata(writer, metadata);
  EXPECT_EQ(bytes,
            (ByteList{0x88, 0x13, 0, 0, 1,                                                  //
                      1,    0,    0, 0, 'K', 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 'i', 'd', 2,  //
                      0,    0,    0, 0, 'F', 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 'p', 0}));
  MetadataBlock read;
  EXPECT_EQ(readMetadata(bytes, 2, read), ReadStatus::ok);
  EXPECT_EQ(read.columns, metadata.columns);
}

TEST(MetadataBlock, SetsOfSeveralAreCountedAtTheEnd) {
  MetadataBlock metadata;
  metadata.rowsInBlock = 1;
  metadata.columnSetCount = 3;  // the second one is empty
  metadata.columns = {column(GelType::number, StorageCode::raw, 0, 0, "a"),
                      column(GelType::number, StorageCode::raw, 1, 2, "b"),
                      column(GelType::text, StorageCode::raw, 2, 2, "c")};
  ByteList bytes;
  ByteWriter writer(bytes);
  writeMetadata(writer, metadata);
  EXPECT_EQ(ByteList(bytes.end() - 12, bytes.end()),
            (ByteList{1, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0}));
  MetadataBlock read;
  EXPECT_EQ(readMetadata(bytes, 3, read), ReadStatus::ok);
  EXPECT_EQ(read.columns, metadata.columns);
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_EQ(readMetadata(Bytes(bytes).first(size), 3, read), ReadStatus::corrupted) << size;
  }
  EXPECT_EQ(readMetadata(bytes, 0xFFFFFFFF, read), ReadStatus::corrupted);
}

TEST(BlockDescriptor, FieldsAreContiguous) {
  const std::vector<GelColumn> columns = {
      column(GelType::key, StorageCode::key, 0, 0, "k"),
      column(GelType::number, StorageCode::raw, 1, 0, "n"),
      column(GelType::text, StorageCode::raw, 2, 1, "t"),
  };
  const DescriptorLayout layout(columns, 2);
  EXPECT_EQ(layout.width(), 4u + 3 * 5 + 2 * 8 + 8 + 17 + 164);
  ByteList bytes(layout.width());
  DescriptorLayout::setRowCount(bytes.data(), 300);
  layout.setBlockLocation(bytes.data(), 0, {.offset = 0x1122, .hasDeltas = true});
  layout.setChunkPosition(bytes.data(), 1, 9);
  layout.writeStatistics(bytes.data(), 0, KeyStatistics{.hasNull = true, .low = 2, .high = 3});
  EXPECT_EQ(ByteList(bytes.begin(), bytes.begin() + 29),
            (ByteList{0x2C, 1,    0, 0,                                // rows
                      0x22, 0x11, 0, 0, 0, 0, 0, 0x80,                 // the first set's block
                      0,    0,    0, 0, 1, 2, 0, 0,    0, 3, 0, 0, 0,  //
                      9,    0,    0, 0}));
  EXPECT_EQ(layout.blockLocation(bytes.data(), 0), (BlockLocation{0x1122, true}));
  EXPECT_EQ(layout.sliceOffset(1), 4u + 8 + 13 + 22);
}

TEST(BlockDescriptor, PositionsBeyond32BitsBecomeDeltas) {
  std::vector<GelColumn> columns;
  for (std::uint32_t i = 0; i < 3; ++i) {
    columns.push_back(column(GelType::key, StorageCode::key, i, 0, "k"));
  }
  const DescriptorLayout layout(columns, 1);
  ByteList bytes(layout.width());
  const auto positions = [&](std::vector<std::uint64_t> chunks) {
    layout.setChunks(bytes.data(), 0, 77, 0, chunks);
    return std::vector<std::uint32_t>{layout.chunkPosition(bytes.data(), 0),
                                      layout.chunkPosition(bytes.data(), 1),
                                      layout.chunkPosition(bytes.data(), 2)};
  };
  using Positions = std::vector<std::uint32_t>;
  EXPECT_EQ(positions({0, 0xFFFFFFF0, 0xFFFFFFFF}), (Positions{0, 0xFFFFFFF0, 0xFFFFFFFF}));
  EXPECT_EQ(layout.blockLocation(bytes.data(), 0), (BlockLocation{77, false}));
  EXPECT_EQ(positions({0, 0xFFFFFFF0, 0x100000000}), (Positions{0, 0xFFFFFFF0, 0x10}));
  EXPECT_EQ(layout.blockLocation(bytes.data(), 0), (BlockLocation{77, true}));
}

TEST(ColumnStatistics, BytesThatHoldNoneAreRefused) {
  ByteList bytes(5 + kTextStatisticsSize);
  KeyStatistics key;
  storeStatistics(bytes.data(), KeyStatistics{.hasNull = false, .low = 4, .high = 3});
  EXPECT_FALSE(loadStatistics(bytes.data(), key));
  storeStatistics(bytes.data(), KeyStatistics{.hasNull = true});
  EXPECT_TRUE(loadStatistics(bytes.data(), key));
  EXPECT_FALSE(key.hasValues());
  bytes[0] = 2;
  EXPECT_FALSE(loadStatistics(bytes.data(), key));

  TextStatistics text;
  storeStatistics(bytes.data(), statisticsBetween("a", std::string(81, 'x')));
  ASSERT_TRUE(loadStatistics(bytes.data(), text));
  EXPECT_EQ(text, statisticsBetween("a", std::string(81, 'x')));
  bytes[2] = 81;
  EXPECT_FALSE(loadStatistics(bytes.data(), text));
}

TEST(ColumnStatistics, ATextTooLongIsCutBelowAndRoundedUpAbove) {
  const std::string letters(79, 'a');
  const auto bound = [](std::string_view high) { return statisticsBetween("", high).upperBound(); };
  EXPECT_EQ(bound("short"), "short");
  EXPECT_EQ(bound(letters + "bb"), letters + "c");
  EXPECT_EQ(bound(letters + "é!"), std::string(78, 'a') + "b");  // é does not fit whole
  EXPECT_EQ(bound(std::string(78, 'a') + "éa"), std::string(78, 'a') + "ê");
  EXPECT_EQ(bound(std::string(77, 'a') + "\xED\x9F\xBF"
                                         "a"),
            std::string(77, 'a') + "\xEE\x80\x80");
  EXPECT_EQ(bound(std::string(76, 'a') + "\U0010FFFF"
                                         "a"),
            std::string(75, 'a') + "b");
  std::string last;
  for (int i = 0; i < 21; ++i) {
    last += "\U0010FFFF";
  }
  EXPECT_EQ(bound(last), std::nullopt);
  const TextStatistics statistics = statisticsBetween(letters + "bb", letters + "bb");
  EXPECT_EQ(statistics.lowerBound(), letters + "b");
  // Bytes that are no text keep the promise as well.
  const std::string noText(90, static_cast<char>(0xBF));
  EXPECT_TRUE(bound(noText) == std::nullopt || *bound(noText) > noText);
}

}  // namespace kelvarin
