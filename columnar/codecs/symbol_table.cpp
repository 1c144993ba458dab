#include "columnar/codecs/symbol_table.h"

#include <algorithm>
#include <array>
#include <bit>

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

bool decodeAll(HuffmanDecoder& decoder, ByteReader& reader, std::size_t count,
               std::vector<std::uint16_t>& values) {
  if (!decoder.take(reader, count) || decoder.alphabetSize() > 256) {
    return false;
  }
  values.resize(count);
  return decoder.next(values);
}

}  // namespace

void SymbolTableEncoder::append(std::span<const Symbol> symbols, ByteBuffer& out) {
  const bool hasNull = symbols.back().isNull();
  const auto rest = symbols.first(symbols.size() - (hasNull ? 1 : 0));
  const auto plain =
      std::find_if(rest.begin(), rest.end(), [](const Symbol& each) { return each.endsText(); }) -
      rest.begin();
  m_sizes.clear();
  m_bytes.clear();
  Symbol before;
  for (const Symbol& symbol : rest) {
    const std::size_t shared = sharedBytes(before, symbol);
    const std::size_t own = symbol.size() - shared;
    m_sizes.push_back(static_cast<std::uint16_t>(shared << kSharedShift | own));
    for (std::size_t i = shared; i < symbol.size(); ++i) {
      m_bytes.push_back(symbol.byte(i));
    }
    before = symbol;
  }
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
  if (count + hasNull > kMaxSymbols || count == 0) {
    return false;
  }
  HuffmanDecoder decoder;
  std::vector<std::uint16_t> sizes;
  std::vector<std::uint16_t> bytes;
  if (!decodeAll(decoder, reader, count, sizes)) {
    return false;
  }
  std::size_t byteCount = 0;
  for (const std::uint16_t size : sizes) {
    byteCount += size & kOwnMask;
  }
  if (byteCount > 0 && !decodeAll(decoder, reader, byteCount, bytes)) {
    return false;
  }
  symbols.assign(count + hasNull, DecodedSymbol{});
  const std::uint16_t* own = bytes.data();
  std::size_t sizeBefore = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const bool isEnding = i >= plain;
    const std::size_t shared = sizes[i] >> kSharedShift;
    const std::size_t ownSize = sizes[i] & kOwnMask;
    const std::size_t size = shared + ownSize;
    if (shared > sizeBefore || size > (isEnding ? kMaxEndingSize : kMaxSymbolSize) ||
        (size == 0 && !isEnding)) {
      return false;
    }
    unsigned char* out = symbols[i].bytes;
    if (shared > 0) {
      std::copy_n(symbols[i - 1].bytes, shared, out);
    }
    for (std::size_t k = shared; k < size; ++k) {
      out[k] = static_cast<unsigned char>(*own++);
    }
    out[kMaxSymbolSize] =
        static_cast<unsigned char>(isEnding ? (size + kLengthSize) | DecodedSymbol::kEnds : size);
    sizeBefore = size;
  }
  if (hasNull) {
    unsigned char* out = symbols.back().bytes;
    storePacked(out, kNullLength);
    out[kMaxSymbolSize] = kLengthSize | DecodedSymbol::kEnds;
  }
  return true;
}

}  // namespace kelvarin
