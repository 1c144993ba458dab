// A chunk of any kind of column. The first byte is the kind, the next four the row count, then come
// the words or the layout byte and the values, which are put into a sound chunk; a kind with its
// highest bit set is followed by the Snappy stream instead.
#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/shaped_texts.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/codecs/text_comparison.h"
#include "columnar/codecs/text_values.h"
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

bool isNull(const unsigned char* text) {
  return kelvarin::loadPacked<std::uint32_t>(text) == kelvarin::kNullLength;
}

// Of the null text no bytes.
std::string_view textAt(const unsigned char* text) {
  return {reinterpret_cast<const char*>(text) + sizeof(std::uint32_t),
          kelvarin::byteCountOf(kelvarin::loadPacked<std::uint32_t>(text))};
}

// Texts that are kept as their fields are as sound as those that are made, and become the same.
void decodeTexts(kelvarin::ChunkDecoder& decoder, kelvarin::Bytes chunk, std::uint32_t rows) {
  using kelvarin::ReadStatus;
  kelvarin::DecodedTexts made;
  kelvarin::DecodedTexts late;
  const ReadStatus status = decoder.decodeTexts(chunk, rows, made);
  if (decoder.decodeTexts(chunk, rows, late, kelvarin::TextForm::late) != status) {
    std::abort();
  }
  if (status != ReadStatus::ok || late.shaped == nullptr) {
    return;
  }
  const kelvarin::ShapedTexts::Rows all{0, nullptr, rows};
  std::vector<unsigned char> bytes(late.shaped->sizeOf(all) + kelvarin::ShapedTexts::kMargin);
  std::vector<std::uint32_t> positions(rows);
  late.shaped->make(all, bytes.data(), positions.data());
  const std::string_view other = textAt(made.text(rows / 2));
  std::vector<std::int8_t> orders(rows);
  late.shaped->compare(other, false, 1, all, orders.data());
  for (std::size_t row = 0; row < rows; ++row) {
    const unsigned char* expected = made.text(made.offsets.size() == 1 ? 0 : row);
    const std::string_view text = textAt(expected);
    if (textAt(bytes.data() + positions[row]) != text ||
        (!isNull(expected) && orders[row] != kelvarin::orderOf(text, other))) {
      std::abort();
    }
  }
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
      decodeTexts(decoder, chunk.bytes(), rows);
      break;
  }
  return 0;
}
