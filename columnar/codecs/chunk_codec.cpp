#include "columnar/codecs/chunk_codec.h"

#include "columnar/codecs/snappy_stream.h"
#include "columnar/format/checksum.h"

namespace kelvarin {

namespace {

// The largest encodings of numbers are the plain one, and the sparse one when all rows differ.
std::uint64_t maximumNumbersSize(std::uint64_t rows) {
  constexpr std::uint64_t kHeads = 64;
  return rows * sizeof(double) + rows / 8 + kHeads;
}

}  // namespace

std::size_t ChunkEncoder::appendKeys(std::span<const std::uint32_t> keys, StorageCode code,
                                     ByteBuffer& out) {
  m_keyCodec.encode(keys, code, m_raw);
  return appendCompressed(out);
}

std::size_t ChunkEncoder::appendNumbers(std::span<const std::uint64_t> numbers, ByteBuffer& out) {
  m_raw.clear();
  m_numbers.append(numbers, m_raw);
  return appendCompressed(out);
}

std::size_t ChunkEncoder::appendTexts(const TextValues& texts, ByteBuffer& out) {
  TextHistory empty;
  return appendTexts(texts, empty, out);
}

std::size_t ChunkEncoder::appendTexts(const TextValues& texts, TextHistory& history,
                                      ByteBuffer& out) {
  assert(texts.rawSize() <= kMaxTextsSize);
  m_raw.clear();
  m_texts.append(texts, history, m_raw);
  return appendCompressed(out);
}

std::size_t ChunkEncoder::appendCompressed(ByteBuffer& out) {
  const std::size_t begin = out.size();
  out.append(kChunkChecksumSize);
  const std::size_t size = appendSnappy(m_raw.bytes(), out);
  storePacked(out.data() + begin, checksum(out.bytes(begin + kChunkChecksumSize)));
  return kChunkChecksumSize + size;
}

ReadStatus ChunkDecoder::uncompress(Bytes chunk, std::uint64_t maximumSize) {
  m_unknownEncoding = -1;
  if (chunk.size() < kChunkChecksumSize) {
    return ReadStatus::corrupted;
  }
  const Bytes stream = chunk.subspan(kChunkChecksumSize);
  if (loadPacked<std::uint32_t>(chunk.data()) != checksum(stream)) {
    return ReadStatus::wrongChecksum;
  }
  const ReadStatus status = uncompressSnappy(stream, maximumSize, m_raw);
  // The values of these rows cannot take more, so the stream is damaged.
  return status == ReadStatus::beyondLimits ? ReadStatus::corrupted : status;
}

RowCounts ChunkDecoder::possibleRowCounts(Bytes chunk, GelType type, RowCounts known) {
  const std::uint64_t maxSize = type == GelType::key      ? KeyCodec::maximumEncodedSize(known.max)
                                : type == GelType::number ? maximumNumbersSize(known.max)
                                                          : kMaxRawSize;
  if (uncompress(chunk, maxSize) != ReadStatus::ok) {
    return RowCounts::none();
  }
  return kelvarin::possibleRowCounts(m_raw.bytes(), type, known);
}

ReadStatus ChunkDecoder::decodeKeys(Bytes chunk, StorageCode code, std::uint32_t rows,
                                    ByteBuffer& keys) {
  const ReadStatus status = uncompress(chunk, KeyCodec::maximumEncodedSize(rows));
  return status == ReadStatus::ok ? m_keyCodec.decode(m_raw.bytes(), code, rows, keys) : status;
}

ReadStatus ChunkDecoder::decodeNumbers(Bytes chunk, std::uint32_t rows, ByteBuffer& numbers) {
  const ReadStatus status = uncompress(chunk, maximumNumbersSize(rows));
  return status == ReadStatus::ok
             ? kelvarin::decodeNumbers(m_raw.bytes(), rows, numbers, m_unknownEncoding)
             : status;
}

ReadStatus ChunkDecoder::decodeTexts(Bytes chunk, std::uint32_t rows, DecodedTexts& texts,
                                     TextForm form) {
  const ReadStatus status = uncompress(chunk, kMaxRawSize);
  return status == ReadStatus::ok
             ? kelvarin::decodeTexts(m_raw.bytes(), rows, form, texts, m_unknownEncoding)
             : status;
}

}  // namespace kelvarin
