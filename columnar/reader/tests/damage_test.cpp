// Files that were cut anywhere, or of which any byte changed: what is lost is reported, and what is
// given is right.
#include <gtest/gtest.h>

#include "columnar/codecs/descriptor_record.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/format/checksum.h"
#include "columnar/format/file_header.h"
#include "columnar/format/file_names.h"
#include "columnar/reader/tests/read_rows.h"

namespace kelvarin::testing {

namespace {

const std::string kMain = FileShape{}.name;
const std::string kSides[] = {sideFileName(kMain, 0), sideFileName(kMain, 1)};
const std::vector<MadeColumn> kColumns{
    {"k", 'K', 0}, {"id", 'K', 0, StorageCode::ascendingKey}, {"price", 'F', 1}, {"name", 'U', 1}};

std::vector<Values> someRows(int count = 22) {
  std::vector<Values> rows;
  for (int i = 0; i < count; ++i) {
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

std::size_t firstRecord(const MemoryFiles& files) {
  std::uint32_t length = 0;
  std::memcpy(&length, files.at(kMain).data() + kCompleteFlagOffset + 1, sizeof length);
  return length + kOpeningSize;
}

// Where each record begins, and the end of the last one.
std::vector<std::size_t> recordPlaces(const MemoryFiles& files) {
  const std::string& bytes = files.at(kMain);
  std::vector<std::size_t> places{firstRecord(files)};
  while (places.back() + 8 < bytes.size()) {
    std::uint32_t size = 0;
    std::memcpy(&size, bytes.data() + places.back(), sizeof size);
    places.push_back(places.back() + 8 + size);
  }
  return places;
}

void expectRightRows(const ReadResult& result, const std::vector<Values>& rows) {
  for (const auto& [number, row] : result.rows) {
    ASSERT_LT(number, rows.size());
    EXPECT_EQ(row, rows[number]) << "row " << number;
  }
}

TEST(Damage, EveryCutOfAMainFileGivesTheBlocksOfItsWholeRecords) {
  const std::vector<Values> rows = someRows();
  for (const bool isComplete : {true, false}) {
    const MemoryFiles whole = someFile(isComplete ? FileShape{} : kKilledWriter);
    const std::vector<std::size_t> records = recordPlaces(whole);
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

TEST(Damage, EveryCutOfASideFileGivesTheBlocksBeforeTheCut) {
  const std::vector<Values> rows = someRows();
  for (const bool isComplete : {true, false}) {
    const MemoryFiles whole = someFile(isComplete ? FileShape{} : kKilledWriter);
    for (const std::string& side : kSides) {
      std::size_t before = 0;
      for (std::size_t size = 0; size < whole.at(side).size(); ++size) {
        MemoryFiles files = whole;
        files[side].resize(size);
        const ReadResult result = readRows(files);
        EXPECT_EQ(result.rows.size() % 4, 0u);
        EXPECT_GE(result.rows.size(), before);
        before = result.rows.size();
        expectRightRows(result, rows);
        EXPECT_EQ(result.damage,
                  std::vector<std::string>{"truncated " + std::to_string(result.rows.size())})
            << side << " cut at " << size;
      }
      EXPECT_EQ(before, 20u);
    }
  }
}

// The metadata block has no checksum.
void expectEveryChangeNoticed(const MemoryFiles& whole, const std::vector<Values>& rows) {
  const std::size_t slots = kHeaderSize + rows[0].size() * kSlotSize;
  const std::size_t records = firstRecord(whole);
  for (const auto& [name, bytes] : whole.all()) {
    for (std::size_t place = 0; place < bytes.size(); ++place) {
      const bool isMetadata = name == kMain && place >= slots && place < records;
      for (const int mask : {0x01, 0x80, 0xFF}) {
        MemoryFiles files = whole;
        files[name][place] = static_cast<char>(bytes[place] ^ mask);
        const ReadResult result = readRows(files);
        if (isMetadata || result.openProblem) {
          continue;
        }
        expectRightRows(result, rows);
        const auto file = GelFile::open(kMain, IncompleteFiles::accept, files.opener());
        const bool isNoticed = !result.damage.empty() || !(*file)->isComplete();
        EXPECT_TRUE(isNoticed || result.rows.size() == rows.size())
            << name << " byte " << place << " mask " << mask;
      }
    }
  }
}

TEST(Damage, EveryChangedByteIsDetectedOrHarmless) {
  expectEveryChangeNoticed(someFile(), someRows());
}

// Every kind of column in blocks with packed groups of keys, in three sets.
TEST(Damage, EveryChangedByteOfEveryKindIsDetectedOrHarmless) {
  const std::vector<MadeColumn> columns{{"k", 'K', 0},
                                        {"up", 'K', 0, StorageCode::ascendingKey},
                                        {"down", 'K', 1, StorageCode::descendingKey},
                                        {"number", 'F', 1},
                                        {"text", 'U', 2},
                                        {"word", 'U', 2}};
  std::vector<Values> rows;
  for (int i = 0; i < 290; ++i) {
    const int mixed = i * 7919 % 1000;
    rows.push_back({i % 50 == 7 ? Value(nullptr) : Value(i % 90 == 0 ? 4'000'000'000.0 : mixed),
                    i * i, 1000 - i, i % 5 == 2 ? Value(nullptr) : Value(mixed * 0.01),
                    Value("name " + std::to_string(mixed)),
                    i % 7 == 3 ? Value(nullptr) : Value(i % 2 == 0 ? "" : "word")});
  }
  expectEveryChangeNoticed(makeFile(columns, rows, {.rowsInBlock = 145, .blocksInRecord = 1}),
                           rows);
}

TEST(Damage, ACorruptedRecordLosesItsOwnRowsOnly) {
  const MemoryFiles whole = someFile();
  const std::vector<std::size_t> records = recordPlaces(whole);
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
  for (const std::uint64_t told : {20ull, 25ull}) {
    MemoryFiles files = someFile();
    std::memcpy(files[kMain].data() + kOpeningSize, &told, sizeof told);
    const ReadResult result = readRows(files);
    EXPECT_EQ(result.rows.size(), 22u);
    EXPECT_EQ(result.damage,
              std::vector<std::string>{told < 22 ? "corrupted 20-21" : "corrupted 22-24"});
  }
}

TEST(Damage, AnIncompleteFileWithAFinalHeaderAndNoMarkerIsRead) {
  const ReadResult result = readRows(someFile({.isComplete = false, .hasEndMarker = false}));
  EXPECT_EQ(result.rows.size(), 22u);
  EXPECT_TRUE(result.damage.empty());
}

// Changes every byte of a record's descriptors and makes the record whole again.
TEST(Damage, ForgedDescriptorsDoNoHarm) {
  const MemoryFiles whole = someFile();
  const std::vector<std::size_t> records = recordPlaces(whole);
  const Bytes bytes = asBytes(whole.at(kMain));
  const Bytes payload = bytes.subspan(records[0] + 8, records[1] - records[0] - 8);
  ByteBuffer raw;
  ASSERT_EQ(uncompressSnappy(payload, kMaximumRawSize, raw), ReadStatus::ok);
  for (std::size_t place = 0; place < raw.size(); ++place) {
    for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      const unsigned char kept = raw.data()[place];
      raw.data()[place] = static_cast<unsigned char>(value);
      ByteBuffer record;
      encodeDescriptorRecord(raw.bytes(), record);
      raw.data()[place] = kept;
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
  for (const MadeColumn& column : kColumns) {
    const std::size_t at = static_cast<std::size_t>(&column - kColumns.data());
    std::vector<Values> rows;
    for (const Values& row : someRows(300)) {
      rows.push_back({row[at]});
    }
    const MemoryFiles whole =
        makeFile({{column.name, column.type, 0, column.storage}}, rows, {.rowsInBlock = 300});
    const std::string& side = whole.at(kSides[0]);
    for (std::size_t place = 4; place < side.size(); ++place) {
      for (const int mask : {0x01, 0x10, 0x80, 0xFF}) {
        MemoryFiles files = whole;
        std::string& forged = files[kSides[0]];
        forged[place] = static_cast<char>(forged[place] ^ mask);
        const std::uint32_t sum = checksum(asBytes(forged).subspan(4));
        std::memcpy(forged.data(), &sum, sizeof sum);
        const ReadResult result = readRows(files);
        EXPECT_TRUE(result.rows.size() == 300 || !result.damage.empty());
      }
    }
  }
}

// A header may announce anything; what it announces must not be taken from memory.
TEST(Damage, AnnouncedSizesAreNotBelieved) {
  for (const std::size_t field : {5u, 17u}) {
    MemoryFiles files = someFile();
    files[kMain].replace(field, 4, 4, '\xFF');
    EXPECT_EQ(readRows(files).openProblem, OpenFailure::Problem::unreadable);
  }
  MemoryFiles files = someFile();
  const std::uint32_t size = 0xFFFFFFF0;
  std::memcpy(files[kMain].data() + firstRecord(files), &size, sizeof size);
  EXPECT_EQ(readRows(files).damage, std::vector<std::string>{"truncated 0"});
}

}  // namespace

}  // namespace kelvarin::testing
