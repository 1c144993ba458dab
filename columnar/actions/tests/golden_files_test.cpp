// Files made from the description of the format alone (format/tests/make_golden.py) and kept for
// ever: every storage code and encoding, both forms of the header, a column set without columns,
// positions as deltas.
#include <algorithm>
#include <fstream>

#include <unistd.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/descriptor_record.h"
#include "columnar/format/file_names.h"
#include "columnar/reader/block_reader.h"
#include "columnar/reader/tests/made_file.h"
#include "columnar/reader/verification.h"
#include "host/contract/batch_rows.h"
#include "host/contract/column_bytes.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kRows = 300;
const std::string kFolder = KELVARIN_GOLDEN_FILES;

std::unique_ptr<GelFile> opened(const std::string& path) {
  auto file = GelFile::open(path, IncompleteFiles::accept);
  return file ? std::move(*file) : nullptr;
}

std::string textOf(const unsigned char* value) {
  return isNullText(value) ? "(null)" : std::string(textFromBytes(value));
}

std::uint64_t bitsOf(const unsigned char* value) {
  return loadPacked<std::uint64_t>(value);
}

std::uint64_t bitsOf(double number) {
  return std::bit_cast<std::uint64_t>(number);
}

// The table, as make_golden.py has it.
std::uint32_t expectedKey(std::uint32_t row) {
  return row == 7        ? 0xFFFFFFFE
         : row % 10 == 3 ? 0xFFFFFFFF
         : row == 50     ? 4000000000
                         : row * row * 31 % 5000;
}

void expectRow(std::uint32_t row, unsigned char* const* values) {
  const std::string text = "row \u00E9 " + std::to_string(row);
  const std::uint64_t few[] = {bitsOf(-0.0), 0x7FF8000000000123, bitsOf(1e300)};
  const char* cities[] = {"Bern", "Berlin", "(null)", ""};
  EXPECT_EQ(textOf(values[0]), row % 11 == 5 ? "(null)" : row % 11 == 6 ? "" : text);
  EXPECT_EQ(textOf(values[1]), cities[row % 4]);
  EXPECT_EQ(bitsOf(values[2]), few[row % 3]);
  EXPECT_EQ(bitsOf(values[3]), bitsOf(1000.0 + row * 1e-9));
  EXPECT_EQ(bitsOf(values[4]), bitsOf(row % 50 == 1 ? row : 0.0));
  EXPECT_EQ(bitsOf(values[5]), bitsOf(row / 3.0));
  EXPECT_EQ(bitsOf(values[6]), row % 7 == 0 ? kNullNumberBits : bitsOf((500 + 25 * row) / 100.0));
  EXPECT_EQ(keyFromBytes(values[7]), expectedKey(row));
  EXPECT_EQ(keyFromBytes(values[8]), row < 2 ? kNullKey : row * 3);
  EXPECT_EQ(keyFromBytes(values[9]), row >= 298 ? kNullKey : 100000 - 2 * row);
  const int hundredths = static_cast<int>(row * 7 % 30) - static_cast<int>(row * 3 % 20);
  EXPECT_EQ(bitsOf(values[10]), row % 9 == 4 ? kNullNumberBits : bitsOf(hundredths / 100.0));
}

}  // namespace

TEST(GoldenFiles, HaveTheirValuesAndNoDamage) {
  for (const char* name : {"finished", "killed"}) {
    const auto file = opened(kFolder + "/" + name + ".cgel_kelvarin");
    ASSERT_NE(file, nullptr) << name;
    EXPECT_EQ(file->isComplete(), name == std::string("finished"));
    auto reader = BlockReader::open(*file, file->columnsInRowOrder());
    ASSERT_TRUE(reader) << name;
    std::uint32_t row = 0;
    unsigned char* values[11];
    ReadEvent event;
    do {
      event = reader.value()->next();
      BatchRows rows;
      for (rows.start(event.batch); rows.rowsLeft() > 0; ++row) {
        rows.take(values);
        expectRow(row, values);
      }
    } while (!event.isLast());
    EXPECT_EQ(event.kind, ReadEvent::Kind::end);
    EXPECT_EQ(row, kRows);
    const GelVerification result =
        verifyGelFile(*file, [](const GelDamage& damage) { ADD_FAILURE() << damage.column; });
    EXPECT_EQ(result.rows, kRows);
    EXPECT_EQ(result.chunks, 22u);
  }
}

// A block of 5 GiB, most of it a hole: the third chunk begins beyond 32 bits.
TEST(GoldenFiles, AChunkBeyond32BitsIsFound) {
  const QTemporaryDir folder;
  const std::string path = folder.filePath(QStringLiteral("far.cgel_kelvarin")).toStdString();
  MetadataBlock metadata;
  metadata.rowsInBlock = 3;
  metadata.columnSetCount = 1;
  for (std::uint32_t i = 0; i < 3; ++i) {
    metadata.columns.push_back(
        {.name = "k", .type = GelType::key, .storage = StorageCode::key, .inputPosition = i});
  }
  const std::uint32_t keys[] = {5, 6, 7};
  ByteBuffer chunk;
  ChunkEncoder().appendKeys(keys, StorageCode::key, chunk);
  const std::uint64_t positions[] = {0, 2'600'000'000, 5'200'000'000};

  const DescriptorLayout layout(metadata.columns, 1);
  std::vector<unsigned char> descriptor(layout.width());
  DescriptorLayout::setRowCount(descriptor.data(), 3);
  layout.setChunks(descriptor.data(), 0, 0, 0, positions);
  for (std::size_t i = 0; i < 3; ++i) {
    layout.writeStatistics(descriptor.data(), i,
                           KeyStatistics{.hasNull = false, .low = 5, .high = 7});
  }
  ByteBuffer record;
  encodeDescriptorRecord(descriptor, record);
  std::ofstream(path, std::ios::binary)
      << testing::headOf(metadata, 3, {}) << asText(record.bytes()) << std::string(8, '\xFF');
  std::ofstream side(sideFileName(path, 0), std::ios::binary);
  side.seekp(static_cast<std::streamoff>(positions[2]));
  side << asText(chunk.bytes());
  side.close();

  const auto file = opened(path);
  ASSERT_NE(file, nullptr);
  auto reader = BlockReader::open(*file, {2});
  ASSERT_TRUE(reader);
  const ReadEvent event = reader.value()->next();
  ASSERT_EQ(event.kind, ReadEvent::Kind::rows);
  ASSERT_EQ(event.batch->rowCount(), std::size(keys));
  EXPECT_TRUE(std::equal(std::begin(keys), std::end(keys), event.batch->column(0).keys()));
}

}  // namespace kelvarin
