// A whole columnar file, its checksums repaired so that what they protect is reached.
#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/descriptor_record.h"
#include "columnar/format/checksum.h"
#include "columnar/reader/block_reader.h"
#include "columnar/reader/table_recovery.h"
#include "columnar/reader/verification.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/packed_files.h"
#include "host/contract/batch_rows.h"

namespace kelvarin {

namespace {

void storeChecksum(std::string& bytes, std::size_t offset, std::size_t begin, std::size_t size) {
  const std::uint32_t sum = checksum(asBytes(bytes).subspan(begin, size));
  std::memcpy(bytes.data() + offset, &sum, sizeof sum);
}

std::unique_ptr<GelFile> open(const testing::MemoryFiles& files) {
  auto file = GelFile::open(kFuzzedFile, IncompleteFiles::accept, files.opener());
  // Blocks of many rows need much memory, and are no fault.
  constexpr std::uint32_t kMaxRows = 1 << 17;
  return file && (*file)->rowsInBlock() <= kMaxRows ? std::move(*file) : nullptr;
}

void repairRecords(const GelFile& file, std::string& bytes) {
  std::size_t offset = file.firstRecordOffset();
  while (offset + kRecordHeadSize <= bytes.size()) {
    std::uint32_t size = 0;
    std::memcpy(&size, bytes.data() + offset, sizeof size);
    if (size > bytes.size() - offset - kRecordHeadSize) {
      return;
    }
    storeChecksum(bytes, offset + sizeof size, offset + kRecordHeadSize, size);
    offset += kRecordHeadSize + size;
  }
}

void repairChunks(const GelFile& file, std::string& side) {
  auto chunks = ChunkReader::open(file, file.columnsInRowOrder());
  if (!chunks) {
    return;
  }
  BlockScan scan(file);
  BlockInfo block;
  for (BlockScan::Step step = scan.next(block); step != BlockScan::Step::end;
       step = scan.next(block)) {
    if (step != BlockScan::Step::block) {
      continue;
    }
    (*chunks)->locate(block);
    for (std::size_t i = 0; i < (*chunks)->columnCount(); ++i) {
      const auto size = (*chunks)->chunkSize(i);
      if (size && *size >= kChunkChecksumSize) {
        const std::size_t begin = (*chunks)->chunkOffset(i);
        storeChecksum(side, begin, begin + kChunkChecksumSize, *size - kChunkChecksumSize);
      }
    }
  }
}

// Takes all rows of a reader or a recovery.
template <typename Rows>
void takeAll(Rows& rows, const GelFile& file) {
  std::vector<unsigned char*> values(file.columns().size());
  for (BatchRows batch;;) {
    const ReadEvent event = rows.next();
    if (event.isLast()) {
      return;
    }
    for (batch.start(event.batch); batch.rowsLeft() > 0;) {
      batch.take(values.data());
    }
  }
}

void readAll(const GelFile& file) {
  if (const auto reader = BlockReader::open(file, file.columnsInRowOrder())) {
    takeAll(**reader, file);
  }
}

void recoverAll(const GelFile& file) {
  if (const auto recovery = TableRecovery::open(file)) {
    takeAll(**recovery, file);
  }
}

}  // namespace

}  // namespace kelvarin

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kelvarin::testing::MemoryFiles files = kelvarin::unpackFiles(data, size);
  const auto file = kelvarin::open(files);
  if (!file) {
    return 0;
  }
  kelvarin::repairRecords(*file, files[kelvarin::kFuzzedFile]);
  kelvarin::repairChunks(*file, files[kelvarin::sideFileName(kelvarin::kFuzzedFile, 0)]);
  kelvarin::readAll(*file);
  (void)kelvarin::verifyGelFile(*file, [](const kelvarin::GelDamage&) {});
  kelvarin::recoverAll(*file);
  files[kelvarin::kFuzzedFile].resize(file->firstRecordOffset());
  kelvarin::recoverAll(*file);
  return 0;
}
