// Files that claim more than they have, with every checksum right: reading them takes time and
// memory in proportion to their size and to their real values.
#include <gtest/gtest.h>

#include <deque>

#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/descriptor_record.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/format/block_descriptor.h"
#include "columnar/format/file_header.h"
#include "columnar/format/file_names.h"
#include "columnar/reader/tests/read_rows.h"
#include "columnar/reader/verification.h"

namespace kelvarin::testing {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsMeasured = false;  // sanitizers take memory and time
#else
constexpr bool kIsMeasured = true;
#endif

const std::string kMain = FileShape{}.name;
const std::string kSide = sideFileName(kMain, 0);
constexpr int kBlocksAhead = 2;
constexpr std::uint32_t kMany = 400'000'000;

struct Cost {
  std::uint64_t values = 0;
  std::uint64_t largestBlock = 0;  // values
  double seconds = 0.0;            // of the processor
  std::uint64_t bytes = 0;         // largest resident size, beyond that of an idle process
};

void readAll(const GelFile& file, Cost& cost) {
  const auto units = BlockUnits::open(file, file.columnsInRowOrder());
  if (!units) {
    return;
  }
  std::deque<std::unique_ptr<BlockUnit>> ahead;
  const auto readAhead = [&] {
    while (ahead.size() <= kBlocksAhead * (*units)->unitsOfBlock()) {
      std::unique_ptr<BlockUnit> unit = (*units)->next();
      if (unit == nullptr) {
        return;
      }
      unit->parse();
      ahead.push_back(std::move(unit));
    }
  };
  for (readAhead(); !ahead.empty(); readAhead()) {
    for (const ReadEvent& event : ahead.front()->events()) {
      if (event.isLast()) {
        return;
      }
      cost.values += event.batch ? event.batch->rowCount() * event.batch->columnCount() : 0;
    }
    ahead.pop_front();
  }
  cost.largestBlock = std::min(cost.values, file.rowsInBlock() * file.columns().size());
}

void verify(const GelFile& file, Cost& cost) {
  const GelVerification result = verifyGelFile(file, [](const GelDamage&) {});
  cost.values = result.chunks * file.rowsInBlock();
  cost.largestBlock = std::uint64_t{file.rowsInBlock()} * (result.chunks > 0 ? 1 : 0);
}

using Work = void (*)(const GelFile&, Cost&);

// Runs in a process of its own, so that its memory can be measured.
Cost costOf(const MemoryFiles& files, Work work) {
  void* shared =
      mmap(nullptr, sizeof(Cost), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  Cost& cost = *new (shared) Cost;
  const auto run = [&](bool isWorking) {
    const pid_t child = fork();
    if (child == 0) {
      if (isWorking) {
        const auto file = GelFile::open(kMain, IncompleteFiles::accept, files.opener());
        if (file) {
          work(**file, cost);
        }
      }
      _exit(0);
    }
    rusage usage{};
    int status = 0;
    wait4(child, &status, 0, &usage);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "ended with " << status;
    return usage;
  };
  malloc_trim(0);  // the memory that making the files took cannot be reused
  const rusage idle = run(false);
  const rusage busy = run(true);
  cost.seconds = static_cast<double>(busy.ru_utime.tv_sec + busy.ru_stime.tv_sec) +
                 static_cast<double>(busy.ru_utime.tv_usec + busy.ru_stime.tv_usec) * 1e-6;
  cost.bytes = static_cast<std::uint64_t>(std::max(0l, busy.ru_maxrss - idle.ru_maxrss)) * 1024;
  const Cost result = cost;
  munmap(shared, sizeof(Cost));
  return result;
}

// `stream` is the size that a Snappy stream really expands to.
void expectBounded(const MemoryFiles& files, const std::string& what, std::uint64_t stream = 0) {
  std::uint64_t size = 0;
  for (const auto& [name, bytes] : files.all()) {
    size += bytes.size();
  }
  for (const Work work : {readAll, verify}) {
    const Cost cost = costOf(files, work);
    if (kIsMeasured) {
      constexpr std::uint64_t kBytesOfValue = 12;  // a text's offset and length
      EXPECT_LE(cost.bytes, (64ull << 20) + 4 * size + stream +
                                kBytesOfValue * cost.largestBlock * (kBlocksAhead + 1))
          << what;
      EXPECT_LE(cost.seconds,
                1.0 + 1e-8 * static_cast<double>(size) + 1e-7 * static_cast<double>(cost.values))
          << what;
    }
  }
}

void storeRecords(MemoryFiles& files, const std::string& records) {
  files[kMain] =
      files.at(kMain).substr(0, firstRecord(files.at(kMain))) + records + std::string(8, '\xFF');
}

std::string sealedRecord(const std::string& payload) {
  const auto size = static_cast<std::uint32_t>(payload.size());
  return std::string(reinterpret_cast<const char*>(&size), sizeof size) + sealedChunk(payload);
}

std::string compressed(const std::string& raw) {
  ByteBuffer stream;
  appendSnappy(asBytes(raw), stream);
  return std::string(asText(stream.bytes()));
}

// A file with one column and one block that claims the number of rows.
MemoryFiles oneChunk(MadeColumn column, std::uint32_t rows, const std::string& chunk) {
  const Value value = column.type == 'U' ? Value("x") : Value(1);
  MemoryFiles files = makeFile({column}, {{value}}, {.rowsInBlock = rows});
  const Bytes main = asBytes(files.at(kMain));
  ByteBuffer raw;
  (void)uncompressSnappy(main.subspan(firstRecord(files.at(kMain)) + kRecordHeadSize), kMaxRawSize,
                         raw);
  DescriptorLayout::setRowCount(raw.data(), rows);
  storeRecords(files, sealedRecord(compressed(std::string(asText(raw.bytes())))));
  const std::uint64_t rowCount = rows;
  std::memcpy(files[kMain].data() + kOpeningSize, &rowCount, sizeof rowCount);
  files[kSide] = chunk;
  return files;
}

struct Columns {
  std::size_t count;
  char type;
  int sets = 1;
  std::size_t chunkSize = 0;
  std::size_t blocks = 1;  // of one row
};

MetadataBlock metadataOf(const Columns& columns) {
  MetadataBlock metadata;
  metadata.rowsInBlock = 1;
  metadata.columnSetCount = columns.sets;
  GelColumn column;
  column.type = static_cast<GelType>(columns.type);
  column.storage = columns.type == 'K' ? StorageCode::key : StorageCode::raw;
  for (std::size_t i = 0; i < columns.count; ++i) {
    column.columnSet = static_cast<int>(i * static_cast<std::size_t>(columns.sets) / columns.count);
    metadata.columns.push_back(column);
  }
  return metadata;
}

// A complete file whose chunks are no chunks.
MemoryFiles manyColumns(const Columns& columns) {
  const MetadataBlock metadata = metadataOf(columns);
  const DescriptorLayout layout(metadata.columns, columns.sets);
  std::vector<std::uint64_t> ends(static_cast<std::size_t>(columns.sets));
  std::string descriptors;
  std::vector<unsigned char> one(layout.width());
  for (std::size_t block = 0; block < columns.blocks; ++block) {
    DescriptorLayout::setRowCount(one.data(), 1);
    const std::vector<std::uint64_t> begins = ends;
    for (std::size_t set = 0; set < begins.size(); ++set) {
      layout.setBlockLocation(one.data(), static_cast<int>(set), {begins[set], false});
    }
    for (std::size_t i = 0; i < columns.count; ++i) {
      const auto set = static_cast<std::size_t>(metadata.columns[i].columnSet);
      layout.setChunkPosition(one.data(), i, static_cast<std::uint32_t>(ends[set] - begins[set]));
      ends[set] += columns.chunkSize;
    }
    descriptors += asText(one);
  }
  MemoryFiles files;
  files[kMain] = headOf(metadata, columns.blocks, {});
  storeRecords(files, sealedRecord(compressed(descriptors)));
  for (std::size_t set = 0; set < ends.size(); ++set) {
    files[sideFileName(kMain, static_cast<int>(set))] = std::string(ends[set], '\3');
  }
  return files;
}

const std::vector<MadeColumn> kKinds{{"k", 'K'},
                                     {"up", 'K', 0, StorageCode::ascendingKey},
                                     {"down", 'K', 0, StorageCode::descendingKey},
                                     {"n", 'F'},
                                     {"t", 'U'}};

TEST(HostileFile, RowCountsAreNotBelieved) {
  const std::string stream = compressed(std::string(100, '\1'));
  for (const MadeColumn& column : kKinds) {
    for (const std::uint32_t rows : {kMany, 0xFFFFFFFFu}) {
      expectBounded(oneChunk(column, rows, sealedChunk(stream)), column.name + " with many rows");
    }
  }
}

TEST(HostileFile, AnnouncedLengthsAreNotBelieved) {
  const std::string length = "\xFF\xFF\xFF\xFF\x0F";
  for (const MadeColumn& column : kKinds) {
    expectBounded(oneChunk(column, kMany, sealedChunk(length + std::string(200, '\1'))),
                  column.name + " with a long stream");
  }
  MemoryFiles files = makeFile({{"k", 'K'}}, {{1}});
  storeRecords(files, sealedRecord(length + std::string(200, '\1')));
  expectBounded(files, "a long record");
}

// Snappy expands one byte to up to 22. Values are expanded, descriptors only as far as the file can
// need it.
TEST(HostileFile, StreamsThatSwellTakeNoMoreThanTheyExpandTo) {
  constexpr std::size_t kSwollen = 70'000'000;
  const std::string stream = compressed(std::string(kSwollen, '\0'));
  for (const MadeColumn& column : kKinds) {
    expectBounded(oneChunk(column, kMany, sealedChunk(stream)), column.name + " swollen", kSwollen);
  }
  MemoryFiles files = makeFile({{"k", 'K'}}, {{1}});
  storeRecords(files, sealedRecord(stream));
  expectBounded(files, "a swollen record");
}

TEST(HostileFile, ValuesOfFewBytesTakeWhatTheirRowsNeed) {
  constexpr std::uint32_t kRows = 3'000'000;
  const std::string zero(8, '\0');
  const std::string codesOfZeroBits = std::string("\0\0\0", 3) + zero;
  const std::string numbers[] = {
      "\1" + codesOfZeroBits, "\5" + codesOfZeroBits, std::string("\2\0\0\0", 4) + zero,
      std::string("\2\0\0\1", 4) + codesOfZeroBits,
      "\4" + zero + std::string(kRows / 8, '\xFF') + "\1" + codesOfZeroBits};
  for (const std::string& raw : numbers) {
    expectBounded(oneChunk({"n", 'F'}, kRows, sealedChunk(compressed(raw))),
                  "numbers in the encoding " + std::to_string(raw[0]));
  }
  const std::string texts[] = {std::string("\0\0\0\0\0\0", 6),
                               std::string("\1\0\0\0\0\0\0\0\0\0", 10)};
  for (const std::string& raw : texts) {
    expectBounded(oneChunk({"t", 'U'}, kRows, sealedChunk(compressed(raw))),
                  "texts in the encoding " + std::to_string(raw[0]));
  }
}

// A few bytes may claim any number of rows, and one value stands for all of them.
TEST(HostileFile, OneValueForAllRowsTakesNoMemory) {
  const std::string one("\1\0\0\0\0\0\0\0", 8);
  const std::string oneAsDouble("\0\0\0\0\0\0\xF0\x3F", 8);
  const std::string codesOfZeroBits("\0\0\0", 3);
  const std::string x("\1\0\0\0\0\1\0\0\0\0x", 11);
  const MemoryFiles made[] = {
      oneChunk({"n", 'F'}, kMany, sealedChunk(compressed("\1" + codesOfZeroBits + one))),
      oneChunk({"n", 'F'}, kMany, sealedChunk(compressed("\5" + codesOfZeroBits + one))),
      oneChunk({"n", 'F'}, kMany,
               sealedChunk(compressed(std::string("\2\0\0\0", 4) + oneAsDouble))),
      oneChunk({"t", 'U'}, kMany, sealedChunk(compressed(x)))};
  for (const MemoryFiles& files : made) {
    const Cost cost = costOf(files, readAll);
    EXPECT_EQ(cost.values, kMany);
    if (kIsMeasured) {
      EXPECT_LE(cost.bytes, 16u << 20);
      EXPECT_LE(cost.seconds, 1.0);
    }
  }
}

// Each entry of a dictionary repeats most of the previous one, and takes few bytes of the file.
TEST(HostileFile, EntriesWithCommonBeginningsTakeNoMoreThanADictionaryCan) {
  constexpr std::size_t kEntries = 65536;
  const std::string length("\xFF\0\0\0", 4);
  const std::string shared = '\0' + std::string(kEntries - 1, '\xFF');
  const std::string entries = '\0' + length + '\x08' + shared + std::string(255, 'x');
  const std::string raw = std::string("\1\xFF\xFF\x10\0\0", 6) + entries;
  for (const std::uint32_t rows : {1, 2}) {  // with and without a code for each row
    expectBounded(oneChunk({"t", 'U'}, rows, sealedChunk(compressed(raw))), "common beginnings");
  }
}

// As many columns as a file can have, and more, none of them with a name.
TEST(HostileFile, ManyColumnsTakeWhatTheirDescriptionsJustify) {
  for (const Columns& most : {Columns{280'000, 'K'}, Columns{165'000, 'F'}}) {
    for (const int sets : {1, 255}) {
      for (const std::size_t chunkSize : {0, 5}) {
        expectBounded(manyColumns({most.count, most.type, sets, chunkSize}),
                      std::to_string(sets) + " sets of columns of type " + most.type);
      }
    }
  }
  const MemoryFiles tooMany = manyColumns({2'000'000, 'K', 1, 5});
  EXPECT_EQ(readRows(tooMany).openProblem, OpenFailure::Problem::unreadable);
  expectBounded(tooMany, "too many columns");
}

TEST(HostileFile, ManyTinyChunksAreCheap) {
  for (const int sets : {1, 255}) {
    expectBounded(manyColumns({20'000, 'K', sets, 5, 150}), std::to_string(sets) + " sets");
  }
}

// After a loss of power a file may end with any number of zeros.
TEST(HostileFile, ZerosAreOneDamage) {
  for (const bool isComplete : {true, false}) {
    MemoryFiles files = makeFile({{"k", 'K'}}, std::vector<Values>(9, Values{1}),
                                 {.isComplete = isComplete, .hasEndMarker = false});
    files[kMain] += std::string(3 << 20, '\0');
    const auto file = GelFile::open(kMain, IncompleteFiles::accept, files.opener());
    std::vector<GelDamage> damages;
    const GelVerification result =
        verifyGelFile(**file, [&](const GelDamage& damage) { damages.push_back(damage); });
    EXPECT_EQ(result.rows, 9u);
    ASSERT_EQ(damages.size(), 1u);
    EXPECT_EQ(damages[0].kind, GelDamage::Kind::mainFileCut);
    EXPECT_EQ(damages[0].firstRow, 9u);
  }
}

// A record of 1000 blocks is as large as its columns make it.
TEST(HostileFile, AFullRecordOfManyTextColumnsIsRead) {
  const MemoryFiles files = manyColumns({600, 'U', 1, 5, 1000});
  const auto file = GelFile::open(kMain, IncompleteFiles::accept, files.opener());
  BlockScan scan(**file);
  BlockInfo block;
  std::uint64_t blocks = 0;
  while (scan.next(block) == BlockScan::Step::block) {
    ++blocks;
  }
  EXPECT_EQ(blocks, 1000u);
}

TEST(HostileFile, RecordsWithoutBlocksAreCheap) {
  MemoryFiles files = makeFile({{"k", 'K'}}, {{1}});
  std::string records;
  for (int i = 0; i < 500'000; ++i) {
    records += std::string(kRecordHeadSize, '\0');
  }
  storeRecords(files, records);
  expectBounded(files, "empty records");
}

// Descriptors of one row each, with as few bytes of chunks as possible.
TEST(HostileFile, BlocksWithoutValuesAreCheap) {
  constexpr int kBlocks = 1'000'000;
  MemoryFiles files = makeFile({{"k", 'K'}}, {{1}}, {.rowsInBlock = 1});
  GelColumn key;
  key.type = GelType::key;
  key.storage = StorageCode::key;
  const DescriptorLayout layout(std::vector<GelColumn>{key}, 1);
  for (const std::uint64_t step : {0, 1, 5}) {
    std::string descriptors;
    std::vector<unsigned char> one(layout.width());
    DescriptorLayout::setRowCount(one.data(), 1);
    for (std::uint64_t i = 0; i < kBlocks; ++i) {
      layout.setBlockLocation(one.data(), 0, {i * step, false});
      descriptors += asText(one);
    }
    storeRecords(files, sealedRecord(compressed(descriptors)));
    files[kSide] = std::string(std::max<std::size_t>(kBlocks * step, 1), '\3');
    expectBounded(files, "blocks of " + std::to_string(step) + " bytes");
  }
}

}  // namespace

}  // namespace kelvarin::testing
