// Files cut at any length, or with any byte changed: every loss is reported, and all returned rows
// are right.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "columnar/codecs/descriptor_record.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/format/file_header.h"
#include "columnar/format/file_names.h"
#include "columnar/reader/tests/read_rows.h"

namespace kelvarin::testing {

namespace {

const std::string kMain = FileShape{}.name;
const std::string kSides[] = {sideFileName(kMain, 0), sideFileName(kMain, 1)};
const std::vector<MadeColumn> kColumns{
    {"k", 'K', 0}, {"id", 'K', 0, StorageCode::ascendingKey}, {"price", 'F', 1}, {"name", 'U', 1}};

std::vector<Values> someRows() {
  std::vector<Values> rows;
  for (int i = 0; i < 22; ++i) {
    rows.push_back({i * 7919 % 100, i, i % 5 == 2 ? Value(nullptr) : Value(i * 0.37),
                    i % 7 == 3 ? Value(nullptr) : Value("name " + std::to_string(i % 6))});
  }
  return rows;
}

// Blocks of 4 rows, records of 2 blocks.
MemoryFiles someFile(FileShape shape = {}) {
  shape.blocksInRecord = 2;
  return makeFile(kColumns, someRows(), shape);
}

// The offset of each record, and the end of the last one.
std::vector<std::size_t> recordOffsets(const MemoryFiles& files) {
  const std::string& bytes = files.at(kMain);
  std::vector<std::size_t> offsets{firstRecord(bytes)};
  while (offsets.back() + 8 < bytes.size()) {
    std::uint32_t size = 0;
    std::memcpy(&size, bytes.data() + offsets.back(), sizeof size);
    offsets.push_back(offsets.back() + 8 + size);
  }
  return offsets;
}

void expectRightRows(const ReadResult& result, const std::vector<Values>& rows) {
  for (const auto& [number, row] : result.rows) {
    ASSERT_LT(number, rows.size());
    EXPECT_EQ(row, rows[number]) << "row " << number;
  }
}

TEST(Damage, EveryCutOfAMainFileLeavesTheBlocksOfItsWholeRecords) {
  const std::vector<Values> rows = someRows();
  for (const bool isComplete : {true, false}) {
    const MemoryFiles whole = someFile(isComplete ? FileShape{} : kKilledWriter);
    const std::vector<std::size_t> records = recordOffsets(whole);
    for (std::size_t size = 0; size < whole.at(kMain).size(); ++size) {
      MemoryFiles files = whole;
      files[kMain].resize(size);
      const ReadResult result = readRows(files);
      if (size < records.front()) {
        EXPECT_EQ(result.openProblem, OpenFailure::Problem::unreadable);
        continue;
      }
      std::size_t wholeRecords = 0;
      while (wholeRecords + 1 < records.size() && records[wholeRecords + 1] <= size) {
        ++wholeRecords;
      }
      const std::size_t count = std::min<std::size_t>(8 * wholeRecords, rows.size());
      EXPECT_EQ(result.rows.size(), count) << "cut at " << size;
      expectRightRows(result, rows);
      const bool isBetweenRecords = size == records[wholeRecords];
      const auto expected = std::vector<std::string>{"truncated " + std::to_string(count)};
      EXPECT_EQ(result.damage,
                !isComplete && isBetweenRecords ? std::vector<std::string>{} : expected)
          << "cut at " << size;
    }
  }
}

// The end of each block of a column set in its side file.
std::vector<std::size_t> blockEnds(const MemoryFiles& files, int set) {
  const auto file = GelFile::open(kMain, IncompleteFiles::accept, files.opener());
  BlockScan scan(**file);
  std::vector<std::size_t> ends;
  for (BlockInfo block; scan.next(block) == BlockScan::Step::block;) {
    if (block.index > 0) {
      ends.push_back((*file)->descriptorLayout().blockLocation(block.descriptor, set).offset);
    }
  }
  ends.push_back(files.at(kSides[set]).size());
  return ends;
}

TEST(Damage, EveryCutOfASideFileLeavesTheBlocksBeforeTheCut) {
  const std::vector<Values> rows = someRows();
  for (const bool isComplete : {true, false}) {
    const MemoryFiles whole = someFile(isComplete ? FileShape{} : kKilledWriter);
    for (const int set : {0, 1}) {
      const std::string& side = kSides[set];
      const std::vector<std::size_t> ends = blockEnds(whole, set);
      ASSERT_EQ(ends.size(), 6u);
      for (std::size_t size = 0; size < whole.at(side).size(); ++size) {
        MemoryFiles files = whole;
        files[side].resize(size);
        const auto blocks = std::upper_bound(ends.begin(), ends.end(), size) - ends.begin();
        const ReadResult result = readRows(files);
        EXPECT_EQ(result.rows.size(), 4u * static_cast<std::size_t>(blocks));
        expectRightRows(result, rows);
        EXPECT_EQ(result.damage,
                  std::vector<std::string>{"truncated " + std::to_string(result.rows.size())})
            << side << " cut at " << size;
      }
    }
  }
}

std::vector<std::size_t> columnsInFileOrder(std::size_t count) {
  std::vector<std::size_t> columns(count);
  std::iota(columns.begin(), columns.end(), std::size_t{0});
  return columns;
}

bool isNoticed(const ReadResult& result, const MemoryFiles& files) {
  const auto file = GelFile::open(kMain, IncompleteFiles::accept, files.opener());
  return !result.damage.empty() || !file || !(*file)->isComplete();
}

std::vector<int> everyMask() {
  std::vector<int> masks(255);
  std::iota(masks.begin(), masks.end(), 1);
  return masks;
}

// The metadata block has no checksum.
void expectEveryChangeNoticed(const MemoryFiles& whole, const std::vector<Values>& rows,
                              const std::vector<int>& masks) {
  const std::size_t slotTable = kHeaderSize + rows[0].size() * kSlotSize;
  const std::size_t records = firstRecord(whole.at(kMain));
  for (const auto& [name, bytes] : whole.all()) {
    for (std::size_t offset = 0; offset < bytes.size(); ++offset) {
      if (name == kMain && offset >= slotTable && offset < records) {
        continue;
      }
      for (const int mask : masks) {
        MemoryFiles files = whole;
        files[name][offset] = static_cast<char>(bytes[offset] ^ mask);
        const ReadResult result = readRows(files);
        if (result.openProblem) {
          EXPECT_TRUE(name == kMain && offset < records);
          continue;
        }
        expectRightRows(result, rows);
        EXPECT_TRUE(isNoticed(result, files) || result.rows.size() == rows.size())
            << name << " byte " << offset << " mask " << mask;
      }
    }
  }
}

TEST(Damage, EveryChangedByteIsDetectedOrHarmless) {
  expectEveryChangeNoticed(someFile(), someRows(), everyMask());
}

// Every storage code and every encoding, in blocks with packed groups of keys, in three sets.
const std::vector<MadeColumn> kEveryKind{{"plain key", 'K', 0},
                                         {"up", 'K', 0, StorageCode::ascendingKey},
                                         {"down", 'K', 1, StorageCode::descendingKey},
                                         {"scaled", 'F', 1},
                                         {"delta", 'F', 1},
                                         {"dictionary", 'F', 1},
                                         {"split bytes", 'F', 1},
                                         {"sparse", 'F', 1},
                                         {"plain", 'F', 1},
                                         {"integers", 'F', 1},
                                         {"texts", 'U', 2},
                                         {"words", 'U', 2},
                                         {"common beginnings", 'U', 2}};

std::vector<Values> rowsOfEveryKind() {
  std::vector<Values> rows;
  for (int i = 0; i < 270; ++i) {
    const int mixed = i * 7919 % 1000;
    const double fraction = std::fmod(i * 0.6180339887498949, 1.0);
    rows.push_back(
        {i % 50 == 7 ? Value(nullptr) : Value(i % 90 == 0 ? 4'000'000'000.0 : mixed), i * i,
         1000 - i, i % 5 == 2 ? Value(nullptr) : Value(mixed * 0.01),
         i % 9 == 4 ? Value(nullptr) : Value((i * 3700 + mixed % 90) / 10.0), std::sqrt(mixed % 20),
         1 + std::floor(fraction * 0x1p30) * 0x1p-40 / 3,
         i % 10 == 3 ? Value(fraction) : Value(0.0), std::exp(900 * fraction - 450),
         i % 30 == 3 ? fraction : mixed * 0.01 * (i % 19), std::to_string(fraction),
         i % 7 == 3 ? Value(nullptr) : Value(i % 2 ? "w" : ""),
         std::string(static_cast<std::size_t>(mixed % 4) * 70, 'b') + std::to_string(mixed % 30)});
  }
  return rows;
}

MemoryFiles fileOfEveryKind() {
  return makeFile(kEveryKind, rowsOfEveryKind(), {.rowsInBlock = 135, .blocksInRecord = 1});
}

TEST(Damage, EveryChangedByteOfEveryKindIsDetectedOrHarmless) {
  expectEveryChangeNoticed(fileOfEveryKind(), rowsOfEveryKind(), {0x01, 0xFF});
}

// Whatever the metadata block says, values are right or the damage is reported. Only the reverse
// order of the rows of a block cannot be noticed.
void expectNoValueChangedByMetadata(const MemoryFiles& whole, const std::vector<MadeColumn>& made,
                                    const std::vector<int>& masks) {
  const auto columns = columnsInFileOrder(made.size());
  const ReadResult expected = readRows(whole, columns);
  int changedOrders = 0;
  for (std::size_t offset = kHeaderSize + columns.size() * kSlotSize;
       offset < firstRecord(whole.at(kMain)); ++offset) {
    for (const int mask : masks) {
      MemoryFiles files = whole;
      files[kMain][offset] = static_cast<char>(whole.at(kMain)[offset] ^ mask);
      const ReadResult result = readRows(files, columns);
      if (isNoticed(result, files) || result.rows == expected.rows) {
        continue;
      }
      const char code = whole.at(kMain)[offset];
      EXPECT_TRUE((code == 2 || code == 3) && mask == 1) << "byte " << offset << " mask " << mask;
      ++changedOrders;
    }
  }
  EXPECT_EQ(changedOrders, std::count_if(made.begin(), made.end(), [](const MadeColumn& column) {
              return column.storage > StorageCode::key;
            }));
}

TEST(Damage, EveryChangedByteOfTheMetadataIsDetectedOrChangesNoValue) {
  expectNoValueChangedByMetadata(someFile(), kColumns, everyMask());
  expectNoValueChangedByMetadata(fileOfEveryKind(), kEveryKind, {0x01, 0x02, 0x03, 0x80, 0xFF});
}

TEST(Damage, ACorruptedRecordLosesItsOwnRowsOnly) {
  const MemoryFiles whole = someFile();
  const std::vector<std::size_t> records = recordOffsets(whole);
  const std::vector<std::string> lost{"corrupted 0-7", "corrupted 8-15", "corrupted 16-21"};
  for (std::size_t i = 0; i < lost.size(); ++i) {
    MemoryFiles files = whole;
    files[kMain][records[i] + 20] ^= 1;
    const ReadResult result = readRows(files);
    EXPECT_EQ(result.damage, std::vector<std::string>{lost[i]});
    EXPECT_EQ(result.rows.size(), 22u - (i == 2 ? 6 : 8));
    expectRightRows(result, someRows());
    // Two lost records.
    files[kMain][records[(i + 1) % 3] + 20] ^= 1;
    const ReadResult less = readRows(files);
    EXPECT_EQ(less.damage.size(), 2u);
    expectRightRows(less, someRows());
    EXPECT_EQ(less.rows.size(), i == 0 ? 6u : 8u);
  }
}

TEST(Damage, ARowCountThatDiffersFromTheBlocksIsACorruption) {
  for (const std::uint64_t stated : {20ull, 25ull}) {
    MemoryFiles files = someFile();
    std::memcpy(files[kMain].data() + kOpeningSize, &stated, sizeof stated);
    const ReadResult result = readRows(files);
    EXPECT_EQ(result.rows.size(), 22u);
    EXPECT_EQ(result.damage,
              std::vector<std::string>{stated < 22 ? "corrupted 20-21" : "corrupted 22-24"});
  }
}

// Changes every byte of a record's descriptors and makes the record whole again.
TEST(Damage, ForgedDescriptorsDoNoHarm) {
  const MemoryFiles whole = someFile();
  const std::vector<std::size_t> records = recordOffsets(whole);
  const Bytes bytes = asBytes(whole.at(kMain));
  const Bytes payload = bytes.subspan(records[0] + 8, records[1] - records[0] - 8);
  ByteBuffer raw;
  ASSERT_EQ(uncompressSnappy(payload, kMaxRawSize, raw), ReadStatus::ok);
  for (std::size_t offset = 0; offset < raw.size(); ++offset) {
    for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      const unsigned char kept = raw.data()[offset];
      raw.data()[offset] = static_cast<unsigned char>(value);
      ByteBuffer record;
      encodeDescriptorRecord(raw.bytes(), record);
      raw.data()[offset] = kept;
      MemoryFiles files = whole;
      files[kMain] = whole.at(kMain).substr(0, records[0]) + std::string(asText(record.bytes())) +
                     whole.at(kMain).substr(records[1]);
      const ReadResult result = readRows(files);
      EXPECT_LE(result.rows.size(), 22u);
    }
  }
}

// Changes every byte of the first chunks and makes their checksums right again.
TEST(Damage, ForgedChunksDoNoHarm) {
  for (std::size_t at = 0; at < kEveryKind.size(); ++at) {
    MadeColumn column = kEveryKind[at];
    column.set = 0;
    std::vector<Values> rows;
    for (const Values& row : rowsOfEveryKind()) {
      rows.push_back({row[at]});
    }
    const MemoryFiles whole = makeFile({column}, rows, {.rowsInBlock = 300});
    const std::string& side = whole.at(kSides[0]);
    for (std::size_t offset = 4; offset < side.size(); ++offset) {
      for (const int mask : {0x01, 0x10, 0x80, 0xFF}) {
        MemoryFiles files = whole;
        std::string stream = side.substr(4);
        stream[offset - 4] = static_cast<char>(stream[offset - 4] ^ mask);
        files[kSides[0]] = sealedChunk(stream);
        const ReadResult result = readRows(files);
        EXPECT_TRUE(result.rows.size() == rows.size() || !result.damage.empty());
      }
    }
  }
}

// A header may announce any size, and none of it may be allocated unchecked.
TEST(Damage, AnnouncedSizesAreNotBelieved) {
  for (const std::size_t field : {5u, 17u}) {
    MemoryFiles files = someFile();
    files[kMain].replace(field, 4, 4, '\xFF');
    EXPECT_EQ(readRows(files).openProblem, OpenFailure::Problem::unreadable);
  }
  MemoryFiles files = someFile();
  const std::uint32_t size = 0xFFFFFFF0;
  std::memcpy(files[kMain].data() + firstRecord(files.at(kMain)), &size, sizeof size);
  EXPECT_EQ(readRows(files).damage, std::vector<std::string>{"truncated 0"});
}

}  // namespace

}  // namespace kelvarin::testing
