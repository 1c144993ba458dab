#include <algorithm>
#include <bit>

#include "columnar/codecs/code_array.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/codecs/text_encoding.h"

namespace kelvarin {

namespace {

// The bytes that each length takes, where the null length has all bits set; 0 when all lengths are
// equal.
int widthOfLengths(std::span<const std::uint32_t> lengths) {
  std::uint32_t longest = 0;
  std::uint32_t different = 0;
  for (const std::uint32_t length : lengths) {
    longest = std::max(longest, length + 1);  // the null length becomes 0
    different |= length ^ lengths[0];
  }
  if (different == 0) {
    return 0;
  }
  return longest <= 0xFF ? 1 : longest <= 0xFFFF ? 2 : 4;
}

template <typename Length>
void putLengths(std::span<const std::uint32_t> lengths, ByteBuffer& out) {
  unsigned char* stored = out.append(lengths.size() * sizeof(Length));
  for (std::size_t i = 0; i < lengths.size(); ++i) {
    storePacked(stored + i * sizeof(Length), static_cast<Length>(lengths[i]));
  }
}

// The width of the lengths, and the lengths; the texts' bytes follow.
void appendLengths(std::span<const std::uint32_t> lengths, ByteBuffer& out) {
  const int width = widthOfLengths(lengths);
  out.put(static_cast<std::uint8_t>(width));
  switch (width) {
    case 0:
      return out.put(lengths[0]);
    case 1:
      return putLengths<std::uint8_t>(lengths, out);
    case 2:
      return putLengths<std::uint16_t>(lengths, out);
    default:
      return putLengths<std::uint32_t>(lengths, out);
  }
}

// How many leading bytes an entry shares with the previous one.
std::size_t sharedBytes(const TextDictionary::Entry& before, const TextDictionary::Entry& entry) {
  const std::size_t max =
      std::min({byteCountOf(before.length), byteCountOf(entry.length), kMaxSharedBytes});
  return static_cast<std::size_t>(
      std::mismatch(entry.bytes, entry.bytes + max, before.bytes).first - entry.bytes);
}

int bitsFor(std::size_t largest) {
  return static_cast<int>(std::bit_width(largest));
}

// Codes of less than a byte take a byte each where that compresses better.
CodeWidth widthOf(std::span<const std::uint16_t> codes, std::size_t entries,
                  std::vector<std::uint8_t>& bytes) {
  constexpr CodeWidth kByte{1, 0};
  const CodeWidth width = *codeWidthFor(entries - 1);
  if (width.bits() == 0 || width.lowBytes > 0) {
    return width;
  }
  bytes.assign(codes.begin(), codes.end());
  return doesCompressBelow(bytes, width.bits()) ? kByte : width;
}

void appendCodes(std::span<const std::uint16_t> codes, CodeWidth width, ByteBuffer& out) {
  const StoredCodes stored(out.append(codesSize(codes.size(), width)), codes.size(), width);
  std::uint32_t batch[kRowsInBatch];
  for (std::size_t first = 0; first < codes.size(); first += kRowsInBatch) {
    const auto part = codes.subspan(first, std::min(kRowsInBatch, codes.size() - first));
    std::copy(part.begin(), part.end(), batch);
    stored.store(first, {batch, part.size()});
  }
}

// The lengths, the numbers of bytes shared with the previous entry, and the other bytes.
void appendEntries(std::span<const TextDictionary::Entry> entries,
                   std::vector<std::uint32_t>& lengths, std::vector<std::uint8_t>& shared,
                   ByteBuffer& out) {
  lengths.clear();
  shared.clear();
  std::uint8_t maxShared = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::size_t count = i == 0 ? 0 : sharedBytes(entries[i - 1], entries[i]);
    lengths.push_back(entries[i].length);
    shared.push_back(static_cast<std::uint8_t>(count));
    maxShared = std::max(maxShared, shared.back());
  }
  appendLengths(lengths, out);
  const int bits = bitsFor(maxShared);
  out.put(static_cast<std::uint8_t>(bits));
  packBits(shared, bits, out.append(packedBitsSize(shared.size(), bits)));
  for (std::size_t i = 0; i < entries.size(); ++i) {
    out.append(Bytes(entries[i].bytes, byteCountOf(entries[i].length)).subspan(shared[i]));
  }
}

}  // namespace

void TextEncoder::append(const TextValues& texts, StringPool& pool, ByteBuffer& out) {
  if (!m_dictionary.fill(texts, pool)) {
    out.put(static_cast<std::uint8_t>(TextEncoding::plain));
    appendLengths(texts.lengths, out);
    return out.append(texts.bytes);
  }
  const auto entries = m_dictionary.entries();
  const CodeWidth width = widthOf(m_dictionary.codes(), entries.size(), m_bytes);
  out.put(static_cast<std::uint8_t>(TextEncoding::dictionary));
  out.put(static_cast<std::uint16_t>(entries.size() - 1));
  out.put(static_cast<std::uint8_t>(width.bits()));
  appendCodes(m_dictionary.codes(), width, out);
  appendEntries(entries, m_lengths, m_bytes, out);
}

}  // namespace kelvarin
