#include "columnar/reader/block_decoder.h"

#include "columnar/codecs/key_words.h"
#include "columnar/reader/stored_statistics.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kBlocksForOneComparison = 16;

}  // namespace

BlockDecoder::BlockDecoder(const GelFile& file, const std::vector<std::size_t>& columns)
    : m_file(file) {
  m_types.reserve(columns.size());
  for (const std::size_t column : columns) {
    m_types.push_back(file.meta(column).type());
  }
}

ReadStatus BlockDecoder::decode(const FetchedBlock& block, std::size_t index, TextForm form,
                                DecodedColumn& values) {
  const FetchedBlock::Chunk& chunk = block.chunks[index];
  if (chunk.status != ReadStatus::ok) {
    return chunk.status;
  }
  auto decoder = takeDecoder();
  const bool mustMatch = isToCompare(block, m_types[index]);
  const ReadStatus status = decodeColumn(*decoder, m_file.column(chunk.column), chunk.bytes,
                                         block.rowCount, values, mustMatch ? TextForm::made : form);
  giveBack(std::move(decoder));
  const bool isRight = status != ReadStatus::ok || !mustMatch ||
                       matchesStatistics(m_file, block.descriptor.data(), chunk.column, values);
  return isRight ? status : ReadStatus::foreign;
}

// The side file of another table has sound chunks, too, and only the statistics differ. Comparing
// all blocks would take as long as decoding them, so a sample is compared. Blocks of few keys are
// always compared: their words look the same for every storage code, and the metadata block, which
// has the code, has no checksum.
bool BlockDecoder::isToCompare(const FetchedBlock& block, MetaTypeColumn type) const {
  const bool isDoubtful = type == MetaTypeColumn::key && block.rowCount < kKeysInGroup;
  return isDoubtful || block.index % kBlocksForOneComparison == 0 || block.isLastKnown;
}

// A decoder keeps its buffers, which take longer to make than a small chunk to decode.
std::unique_ptr<ChunkDecoder> BlockDecoder::takeDecoder() {
  {
    const std::lock_guard lock(m_mutex);
    if (!m_idleDecoders.empty()) {
      auto decoder = std::move(m_idleDecoders.back());
      m_idleDecoders.pop_back();
      return decoder;
    }
  }
  return std::make_unique<ChunkDecoder>();
}

void BlockDecoder::giveBack(std::unique_ptr<ChunkDecoder> decoder) {
  const std::lock_guard lock(m_mutex);
  m_idleDecoders.push_back(std::move(decoder));
}

}  // namespace kelvarin
