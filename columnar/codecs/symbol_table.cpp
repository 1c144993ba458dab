#include "columnar/codecs/symbol_table.h"

#include <algorithm>
#include <array>
#include <bit>

#include <emmintrin.h>

namespace kelvarin {

namespace {

constexpr std::uint8_t kHasNull = 1;
constexpr int kSharedShift = 4;
constexpr std::size_t kOwnMask = 0xF;

std::size_t sharedBytes(const Symbol& before, const Symbol& symbol) {
  const std::uint64_t low = before.low ^ symbol.low;
  const std::uint64_t high = before.high ^ symbol.high;
  const int equal = low != 0 ? std::countr_zero(low) / 8 : 8 + std::countr_zero(high) / 8;
  return std::min({before.size(), symbol.size(), static_cast<std::size_t>(equal)});
}

// Writes the bytes of a symbol from one on, and some others, as 16 numbers.
void writeWide(const Symbol& symbol, std::size_t first, std::uint16_t* out) {
  unsigned char bytes[2 * sizeof(Symbol)] = {};
  std::memcpy(bytes, &symbol, sizeof symbol);
  const __m128i own = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + first));
  auto* to = reinterpret_cast<__m128i*>(out);
  _mm_storeu_si128(to, _mm_unpacklo_epi8(own, _mm_setzero_si128()));
  _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(own, _mm_setzero_si128()));
}

bool decodeAll(HuffmanDecoder& decoder, ByteReader& reader, std::size_t count,
               std::vector<std::uint16_t>& values) {
  if (!decoder.take(reader, count) || decoder.alphabetSize() > 256) {
    return false;
  }
  values.resize(count);
  return decoder.next(values);
}

// Symbols in their order, each beginning with bytes of the one before.
class StoredSymbols {
 public:
  bool read(ByteReader& reader, std::size_t count) {
    HuffmanDecoder decoder;
    if (!decodeAll(decoder, reader, count, m_sizes)) {
      return false;
    }
    std::size_t byteCount = 0;
    for (const std::uint16_t size : m_sizes) {
      byteCount += size & kOwnMask;
    }
    return byteCount == 0 || decodeAll(decoder, reader, byteCount, m_bytes);
  }

  // The next one. False where its size is none that a symbol has.
  bool decode(bool isEnding, DecodedSymbol& symbol) {
    const std::size_t shared = m_sizes[m_next] >> kSharedShift;
    const std::size_t ownSize = m_sizes[m_next] & kOwnMask;
    const std::size_t size = shared + ownSize;
    if (shared > m_before.size || size > (isEnding ? kMaxEndingSize : kMaxSymbolSize) ||
        (size == 0 && !isEnding)) {
      return false;
    }
    std::copy_n(m_before.bytes, shared, symbol.bytes);
    for (std::size_t i = shared; i < size; ++i) {
      symbol.bytes[i] = static_cast<unsigned char>(m_bytes[m_nextByte++]);
    }
    symbol.bytes[kMaxSymbolSize] =
        static_cast<unsigned char>(isEnding ? (size + kLengthSize) | DecodedSymbol::kEnds : size);
    m_before = {symbol.bytes, size};
    ++m_next;
    return true;
  }

 private:
  struct Known {
    const unsigned char* bytes = nullptr;
    std::size_t size = 0;
  };

  std::vector<std::uint16_t> m_sizes;  // of each symbol, shared and own bytes
  std::vector<std::uint16_t> m_bytes;  // the own bytes of all symbols
  std::size_t m_next = 0;
  std::size_t m_nextByte = 0;
  Known m_before;  // no symbol before the first one
};

}  // namespace

void SymbolTableEncoder::append(std::span<const Symbol> symbols, ByteBuffer& out) {
  const bool hasNull = symbols.back().isNull();
  const auto rest = symbols.first(symbols.size() - (hasNull ? 1 : 0));
  const auto plain =
      std::find_if(rest.begin(), rest.end(), [](const Symbol& each) { return each.endsText(); }) -
      rest.begin();
  m_sizes.resize(rest.size());
  m_bytes.resize((rest.size() + 1) * sizeof(Symbol));
  std::uint16_t* wide = m_bytes.data();
  Symbol before;
  for (std::size_t i = 0; i < rest.size(); ++i) {
    const std::size_t shared = sharedBytes(before, rest[i]);
    const std::size_t own = rest[i].size() - shared;
    m_sizes[i] = static_cast<std::uint16_t>(shared << kSharedShift | own);
    writeWide(rest[i], shared, wide);
    wide += own;
    before = rest[i];
  }
  m_bytes.resize(static_cast<std::size_t>(wide - m_bytes.data()));
  out.put(static_cast<std::uint8_t>(hasNull ? kHasNull : 0));
  out.put(static_cast<std::uint16_t>(plain));
  out.put(static_cast<std::uint16_t>(rest.size() - static_cast<std::size_t>(plain)));
  appendCodes(m_sizes, out);
  if (!m_bytes.empty()) {
    appendCodes(m_bytes, out);
  }
}

void SymbolTableEncoder::appendCodes(std::span<const std::uint16_t> values, ByteBuffer& out) {
  std::array<std::uint32_t, 256> counts{};
  for (const std::uint16_t value : values) {
    ++counts[value];
  }
  m_codes.fit(counts);
  m_codes.append(values, out);
}

bool readSymbolTable(ByteReader& reader, std::vector<DecodedSymbol>& symbols, bool& hasNull) {
  std::uint8_t flags = 0;
  std::uint16_t plain = 0;
  std::uint16_t ending = 0;
  if (!reader.read(flags) || flags > kHasNull || !reader.read(plain) || !reader.read(ending)) {
    return false;
  }
  hasNull = flags == kHasNull;
  const std::size_t count = std::size_t{plain} + ending;
  StoredSymbols stored;
  if (count + hasNull > kMaxSymbols || count == 0 || !stored.read(reader, count)) {
    return false;
  }
  symbols.assign(count + hasNull, DecodedSymbol{});
  for (std::size_t i = 0; i < count; ++i) {
    if (!stored.decode(i >= plain, symbols[i])) {
      return false;
    }
  }
  if (hasNull) {
    storePacked(symbols.back().bytes, kNullLength);
    symbols.back().bytes[kMaxSymbolSize] = kLengthSize | DecodedSymbol::kEnds;
  }
  return true;
}

}  // namespace kelvarin
