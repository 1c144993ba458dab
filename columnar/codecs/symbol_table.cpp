#include "columnar/codecs/symbol_table.h"

#include <algorithm>
#include <array>
#include <bit>

#include <nmmintrin.h>

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

// Words of which some first bytes are all the same, and the others those of a sequence.
class SlidingWord {
 public:
  constexpr SlidingWord(unsigned char before, unsigned char first, unsigned char step) {
    std::fill_n(m_bytes.begin(), sizeof(__m128i), before);
    for (std::size_t i = sizeof(__m128i); i < m_bytes.size(); ++i) {
      m_bytes[i] = static_cast<unsigned char>(first + (i - sizeof(__m128i)) * step);
    }
  }
  // The word with so many bytes before the sequence.
  __m128i operator[](std::size_t count) const {
    return _mm_loadu_si128(
        reinterpret_cast<const __m128i_u*>(m_bytes.data() + sizeof(__m128i) - count));
  }

 private:
  std::array<unsigned char, 2 * sizeof(__m128i)> m_bytes{};
};

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
    std::vector<std::uint16_t> bytes;
    if (byteCount > 0 && !decodeAll(decoder, reader, byteCount, bytes)) {
      return false;
    }
    m_bytes.resize(byteCount + sizeof(__m128i));
    std::copy(bytes.begin(), bytes.end(), m_bytes.begin());
    m_nextSize = m_sizes.data();
    m_nextByte = m_bytes.data();
    return true;
  }

  // The next ones, all of which end a text or none. False where a size is none that they have.
  bool decode(bool areEnding, std::span<DecodedSymbol> symbols) {
    static constexpr SlidingWord kPositions(0x80, 0, 1);  // of bytes behind shared ones
    static constexpr SlidingWord kBytes(0xFF, 0, 0);      // that count
    const std::size_t added = areEnding ? kLengthSize : 0;
    const std::size_t flag = areEnding ? DecodedSymbol::kEnds : 0;
    const std::size_t minSize = areEnding ? 0 : 1;
    const std::size_t maxSize = areEnding ? kMaxEndingSize : kMaxSymbolSize;
    __m128i symbol = m_before;
    std::size_t sizeBefore = m_sizeBefore;
    for (DecodedSymbol& to : symbols) {
      const std::size_t shared = *m_nextSize >> kSharedShift;
      const std::size_t ownSize = *m_nextSize++ & kOwnMask;
      const std::size_t size = shared + ownSize;
      if (shared > sizeBefore || size < minSize || size > maxSize) {
        return false;
      }
      const __m128i own = _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(m_nextByte));
      symbol = _mm_or_si128(_mm_and_si128(symbol, kBytes[shared]),
                            _mm_and_si128(_mm_shuffle_epi8(own, kPositions[shared]), kBytes[size]));
      _mm_storeu_si128(reinterpret_cast<__m128i_u*>(to.bytes), symbol);
      to.bytes[kMaxSymbolSize] = static_cast<unsigned char>((size + added) | flag);
      m_nextByte += ownSize;
      sizeBefore = size;
    }
    m_before = symbol;
    m_sizeBefore = sizeBefore;
    return true;
  }

 private:
  std::vector<std::uint16_t> m_sizes;  // of each symbol, shared and own bytes
  std::vector<unsigned char> m_bytes;  // the own bytes of all symbols, and a margin
  const std::uint16_t* m_nextSize = nullptr;
  const unsigned char* m_nextByte = nullptr;
  __m128i m_before = _mm_setzero_si128();  // no symbol before the first one
  std::size_t m_sizeBefore = 0;
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
  symbols.resize(count + hasNull);
  const std::span both(symbols.data(), count);
  if (!stored.decode(false, both.first(plain)) || !stored.decode(true, both.subspan(plain))) {
    return false;
  }
  if (hasNull) {
    symbols.back() = {};
    storePacked(symbols.back().bytes, kNullLength);
    symbols.back().bytes[kMaxSymbolSize] = kLengthSize | DecodedSymbol::kEnds;
  }
  return true;
}

}  // namespace kelvarin
