// A chunk of any kind of column. The first byte is the kind, the next four the row count, then come
// the words or the layout byte and the values, which are put into a sound chunk; a kind with its
// highest bit set is followed by the Snappy stream instead.
#include <algorithm>
#include <vector>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/format/checksum.h"
#include "fuzz/fuzz_target.h"

namespace {

constexpr std::size_t kHeadSize = 5;
constexpr std::uint32_t kMaxRows = 1 << 17;  // two pages of packed keys

kelvarin::ByteBuffer chunkOf(kelvarin::Bytes content, bool isStream) {
  kelvarin::ByteBuffer chunk;
  chunk.append(kelvarin::kChunkChecksumSize);
  if (isStream) {
    chunk.append(content);
  } else {
    kelvarin::appendSnappy(content, chunk);
  }
  kelvarin::storePacked(chunk.data(),
                        kelvarin::checksum(chunk.bytes(kelvarin::kChunkChecksumSize)));
  return chunk;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < kHeadSize) {
    return 0;
  }
  const auto rows = std::min(kelvarin::loadPacked<std::uint32_t>(data + 1), kMaxRows);
  const kelvarin::ByteBuffer chunk =
      chunkOf({data + kHeadSize, size - kHeadSize}, (data[0] & 0x80) != 0);
  kelvarin::ChunkDecoder decoder;
  kelvarin::ByteBuffer values;
  kelvarin::DecodedTexts texts;
  switch (data[0] & 0x7F) {
    case 0:
      (void)decoder.decodeNumbers(chunk.bytes(), rows, values);
      break;
    case 1:
    case 2:
    case 3:
      (void)decoder.decodeKeys(chunk.bytes(), static_cast<kelvarin::StorageCode>(data[0] & 0x7F),
                               rows, values);
      break;
    default:
      (void)decoder.decodeTexts(chunk.bytes(), rows, texts);
      break;
  }
  return 0;
}
