#include "cli/gel/table_layout.h"

#include <algorithm>
#include <array>

#include "base/byte_cursor.h"
#include "columnar/codecs/descriptor_record.h"
#include "columnar/format/file_header.h"
#include "columnar/reader/chunk_reader.h"

namespace kelvarin {

namespace {

using Pieces = std::vector<LayoutPiece>;

constexpr char kUnused[] = "nothing refers to it";
constexpr std::size_t kChecksumSize = 4;

template <typename Number>
std::optional<Number> numberAt(const ByteSource& source, std::uint64_t offset) {
  std::array<unsigned char, sizeof(Number)> bytes;
  return source.readAt(offset, bytes.data(), bytes.size()) == bytes.size()
             ? std::optional(loadPacked<Number>(bytes.data()))
             : std::nullopt;
}

// Puts a piece before each gap, and what is behind the last piece; none reaches beyond the file.
void fillGaps(Pieces& pieces, const std::string& file, std::uint64_t size) {
  std::sort(pieces.begin(), pieces.end(),
            [](const LayoutPiece& a, const LayoutPiece& b) { return a.offset < b.offset; });
  Pieces whole;
  std::uint64_t end = 0;
  const auto fillTo = [&](std::uint64_t offset) {
    if (offset > end) {
      whole.push_back({.file = file, .offset = end, .size = offset - end, .what = kUnused});
      end = offset;
    }
  };
  for (LayoutPiece& piece : pieces) {
    fillTo(std::min(piece.offset, size));
    if (piece.offset < end || piece.offset + piece.size > size) {
      continue;  // damage: its bytes are those of another piece, or not there
    }
    end = piece.offset + piece.size;
    whole.push_back(std::move(piece));
  }
  fillTo(size);
  pieces = std::move(whole);
}

void appendRecords(const GelFile& file, Pieces& pieces) {
  std::uint64_t offset = file.firstRecordOffset();
  const ByteSource& source = file.source();
  const auto add = [&](const char* what, std::uint64_t size) {
    pieces.push_back({.file = file.path(), .offset = offset, .size = size, .what = what});
    offset += size;
  };
  for (auto head = numberAt<std::uint64_t>(source, offset); head && *head != kEndMarker;
       head = numberAt<std::uint64_t>(source, offset)) {
    const std::uint64_t payload = *head & 0xFFFFFFFFu;
    if (payload == 0 || offset + kRecordHeadSize + payload > source.size()) {
      return;
    }
    add("descriptors: length and checksum", kRecordHeadSize);
    pieces.back().checksum = static_cast<std::uint32_t>(*head >> 32);
    add("descriptors", payload);
  }
  if (offset + sizeof kEndMarker <= source.size()) {
    add("end marker", sizeof kEndMarker);
  }
}

Pieces layoutOfMain(const GelFile& file) {
  const std::uint64_t slotBytes = kSlotSize * file.columns().size();
  const std::uint64_t metadata = kHeaderSize + slotBytes;
  Pieces pieces{
      {.file = file.path(), .offset = 0, .size = kHeaderSize, .what = "header"},
      {.file = file.path(), .offset = kHeaderSize, .size = slotBytes, .what = "slot table"},
      {.file = file.path(),
       .offset = metadata,
       .size = file.firstRecordOffset() - metadata,
       .what = "metadata"}};
  appendRecords(file, pieces);
  fillGaps(pieces, file.path(), file.source().size());
  return pieces;
}

struct Side {
  std::string path;
  std::unique_ptr<ByteSource> source;
  Pieces pieces;
};

void addChunk(Side& side, std::uint64_t block, std::size_t column, std::uint64_t offset,
              std::uint64_t size) {
  if (size < kChecksumSize) {
    return;
  }
  side.pieces.push_back({.file = side.path,
                         .offset = offset,
                         .size = kChecksumSize,
                         .what = "chunk: checksum",
                         .block = block,
                         .column = column,
                         .checksum = numberAt<std::uint32_t>(*side.source, offset)});
  side.pieces.push_back({.file = side.path,
                         .offset = offset + kChecksumSize,
                         .size = size - kChecksumSize,
                         .what = "chunk: values",
                         .block = block,
                         .column = column,
                         .checksum = {}});
}

}  // namespace

Result<Pieces, std::string> layoutOf(const GelFile& file) {
  std::vector<std::size_t> columns(file.columns().size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    columns[i] = i;
  }
  auto chunks = ChunkReader::open(file, columns);
  if (!chunks) {
    return Failure{chunks.error()};
  }
  std::vector<Side> sides;
  sides.reserve(static_cast<std::size_t>(file.columnSetCount()));
  for (int set = 0; set < file.columnSetCount(); ++set) {
    sides.push_back({file.sidePath(set), file.openSide(set), {}});
  }
  BlockScan scan(file);
  BlockInfo block;
  for (auto step = scan.next(block);
       step == BlockScan::Step::block || step == BlockScan::Step::corrupted;
       step = scan.next(block)) {
    if (step == BlockScan::Step::corrupted) {
      continue;
    }
    (*chunks)->locate(block);
    for (const std::size_t column : columns) {
      Side& side = sides[static_cast<std::size_t>(file.column(column).columnSet)];
      const auto size = (*chunks)->chunkSize(column);
      if (size && side.source != nullptr) {
        addChunk(side, block.index, column, (*chunks)->chunkOffset(column), *size);
      }
    }
  }
  Pieces all = layoutOfMain(file);
  for (Side& side : sides) {
    if (side.source != nullptr) {
      fillGaps(side.pieces, side.path, side.source->size());
      std::move(side.pieces.begin(), side.pieces.end(), std::back_inserter(all));
    }
  }
  return all;
}

}  // namespace kelvarin
