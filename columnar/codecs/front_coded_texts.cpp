#include "columnar/codecs/front_coded_texts.h"

#include <algorithm>
#include <bit>
#include <numeric>

#include "columnar/codecs/code_array.h"
#include "columnar/codecs/stored_lengths.h"
#include "columnar/codecs/text_limits.h"

namespace kelvarin {

namespace {

constexpr std::size_t kMaxSharedBytes = 255;
// Of coded sizes: the null text, or a number of bytes and 1.
constexpr std::uint16_t kNullSize = 0;

// How many leading bytes a text shares with the previous one.
std::size_t sharedBytes(Bytes before, Bytes text) {
  const std::size_t max = std::min({before.size(), text.size(), kMaxSharedBytes});
  return static_cast<std::size_t>(
      std::mismatch(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(max), before.begin())
          .first -
      text.begin());
}

// Calls use(bytes that are not shared, shared, length) for each text.
template <typename Use>
void forEachRest(const TextValues& texts, std::span<const std::uint8_t> shared, Use use) {
  std::size_t offset = 0;
  for (std::size_t i = 0; i < texts.lengths.size(); ++i) {
    const std::size_t size = byteCountOf(texts.lengths[i]);
    use(texts.bytes.subspan(offset + shared[i], size - shared[i]), shared[i], texts.lengths[i]);
    offset += size;
  }
}

// What is known of the texts before they are put together.
struct StoredEntries {
  std::vector<std::uint32_t> lengths;
  std::vector<std::uint8_t> shared;
  std::uint64_t size = 0;  // of all texts, whole
  Bytes rest;              // what is not shared

  std::uint64_t sizeInMemory() const { return lengths.size() * kLengthSize + size; }
  std::uint64_t restSize() const {
    return size - std::accumulate(shared.begin(), shared.end(), std::uint64_t{0});
  }

  // No text shares more bytes than it or the previous one has.
  [[nodiscard]] bool addUp() {
    std::size_t before = 0;
    bool isSound = true;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
      const std::size_t bytes = byteCountOf(lengths[i]);
      isSound &= shared[i] <= std::min(before, bytes);
      size += bytes;
      before = bytes;
    }
    return isSound && sizeInMemory() <= 0xFFFFFFFF;
  }
};

// Writes each text with its length before it.
void putTogether(const StoredEntries& stored, DecodedTexts& texts) {
  // Short texts are put together in a register and written as 16 bytes, so both ends need a margin.
  __extension__ using Beginning = unsigned __int128;
  constexpr std::size_t kShort = sizeof(Beginning);
  texts.offsets.resize(stored.lengths.size());
  texts.bytes.resize(stored.sizeInMemory() + kTextMargin);
  unsigned char* out = texts.bytes.data();
  const unsigned char* in = stored.rest.data();
  const unsigned char* end = in + stored.rest.size();
  const unsigned char* textBefore = nullptr;
  Beginning before = 0;  // of the previous text, and bytes without meaning after a shorter one
  for (std::size_t i = 0; i < stored.lengths.size(); ++i) {
    texts.offsets[i] = static_cast<std::uint32_t>(out - texts.bytes.data());
    storePacked(out, stored.lengths[i]);
    out += kLengthSize;
    const std::size_t bytes = byteCountOf(stored.lengths[i]);
    const std::size_t shared = stored.shared[i];
    if (bytes < kShort && static_cast<std::size_t>(end - in) >= kShort) [[likely]] {
      Beginning rest = 0;
      std::memcpy(&rest, in, kShort);
      before = (before & ((Beginning{1} << 8 * shared) - 1)) | rest << 8 * shared;
      std::memcpy(out, &before, kShort);
    } else {
      std::copy_n(in, bytes - shared, std::copy_n(textBefore, shared, out));
      std::memcpy(&before, out, kShort);
    }
    textBefore = out;
    in += bytes - shared;
    out += bytes;
  }
  texts.bytes.resize(stored.sizeInMemory());
}

// Symbols below `limit`.
bool readSymbols(ByteReader& reader, std::size_t count, std::size_t limit,
                 std::vector<std::uint16_t>& symbols) {
  HuffmanDecoder decoder;
  if (!decoder.take(reader, count) || decoder.alphabetSize() > limit) {
    return false;
  }
  symbols.resize(count);
  return decoder.next(symbols);
}

}  // namespace

void FrontCodedEncoder::findShared(const TextValues& texts) {
  const std::size_t count = texts.lengths.size();
  m_shared.resize(count);
  Bytes before;
  std::size_t offset = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const Bytes text = texts.bytes.subspan(offset, byteCountOf(texts.lengths[i]));
    m_shared[i] = static_cast<std::uint8_t>(sharedBytes(before, text));
    before = text;
    offset += text.size();
  }
}

void FrontCodedEncoder::append(const TextValues& texts, ByteBuffer& out) {
  findShared(texts);
  appendLengths(texts.lengths, out);
  const auto bits = static_cast<int>(
      std::bit_width(unsigned{*std::max_element(m_shared.begin(), m_shared.end())}));
  out.put(static_cast<std::uint8_t>(bits));
  packBits(m_shared, bits, out.append(packedBitsSize(m_shared.size(), bits)));
  forEachRest(texts, m_shared, [&](Bytes rest, std::uint8_t, std::uint32_t) { out.append(rest); });
}

bool FrontCodedEncoder::appendCoded(const TextValues& texts, ByteBuffer& out) {
  const std::size_t begin = out.size();
  findShared(texts);
  m_symbols.assign(m_shared.begin(), m_shared.end());
  appendSymbols(m_symbols, out);
  m_symbols.clear();
  bool areShort = true;
  forEachRest(texts, m_shared, [&](Bytes rest, std::uint8_t, std::uint32_t length) {
    areShort &= rest.size() + 1 < kMaxHuffmanSymbols;
    m_symbols.push_back(length == kNullLength ? kNullSize
                                              : static_cast<std::uint16_t>(rest.size() + 1));
  });
  if (!areShort) {
    return false;
  }
  appendSymbols(m_symbols, out);
  m_symbols.clear();
  forEachRest(texts, m_shared, [&](Bytes rest, std::uint8_t, std::uint32_t) {
    m_symbols.insert(m_symbols.end(), rest.begin(), rest.end());
  });
  if (!m_symbols.empty()) {
    appendSymbols(m_symbols, out);
  }
  return texts.rawSize() <= maxDecodedSize(out.size() - begin);
}

void FrontCodedEncoder::appendSymbols(std::span<const std::uint16_t> symbols, ByteBuffer& out) {
  m_counts.assign(*std::max_element(symbols.begin(), symbols.end()) + std::size_t{1}, 0);
  for (const std::uint16_t symbol : symbols) {
    ++m_counts[symbol];
  }
  m_codes.fit(m_counts);
  m_codes.append(symbols, out);
}

bool decodeFrontCoded(ByteReader& reader, std::size_t count, DecodedTexts& texts) {
  StoredEntries stored;
  StoredLengths lengths;
  std::uint8_t bits = 0;
  Bytes packed;
  if (!lengths.take(reader, count) || !reader.read(bits) || bits > 8 ||
      !reader.readBytes(packedBitsSize(count, bits), packed)) {
    return false;
  }
  stored.lengths.reserve(count);
  lengths.forEach(count, [&](std::uint32_t length) { stored.lengths.push_back(length); });
  stored.shared.resize(count);
  LoadedCodes(packed.data(), count, *codeWidthOf(bits))
      .forEachBatch([&](std::size_t first, std::span<const std::uint32_t> batch) {
        std::transform(batch.begin(), batch.end(), stored.shared.data() + first,
                       [](std::uint32_t code) { return static_cast<std::uint8_t>(code); });
        return true;
      });
  if (!stored.addUp() || !reader.readBytes(reader.remaining(), stored.rest) ||
      stored.rest.size() != stored.restSize()) {
    return false;
  }
  putTogether(stored, texts);
  return true;
}

bool decodeCodedEntries(ByteReader& reader, std::size_t count, DecodedTexts& texts) {
  const std::uint64_t maxSize = maxDecodedSize(reader.remaining());
  StoredEntries stored;
  std::vector<std::uint16_t> symbols;
  if (!readSymbols(reader, count, kMaxSharedBytes + 1, symbols)) {
    return false;
  }
  stored.shared.assign(symbols.begin(), symbols.end());
  if (!readSymbols(reader, count, kMaxHuffmanSymbols, symbols)) {
    return false;
  }
  stored.lengths.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    stored.lengths.push_back(symbols[i] == kNullSize ? kNullLength
                                                     : stored.shared[i] + symbols[i] - 1u);
  }
  if (!stored.addUp() || stored.sizeInMemory() > maxSize ||
      (stored.restSize() > 0 && !readSymbols(reader, stored.restSize(), 256, symbols))) {
    return false;
  }
  const std::vector<unsigned char> rest(
      symbols.begin(), symbols.begin() + static_cast<std::ptrdiff_t>(stored.restSize()));
  stored.rest = rest;
  putTogether(stored, texts);
  return reader.remaining() == 0;
}

}  // namespace kelvarin
