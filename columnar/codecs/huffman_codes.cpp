#include "columnar/codecs/huffman_codes.h"

#include <algorithm>
#include <utility>

#include "columnar/codecs/code_array.h"

namespace kelvarin {

namespace {

constexpr int kMaxLength = 14;
// Longer codes would gain little, and a decoder's table of this size fits the first-level cache.
constexpr int kLongestWritten = 12;
constexpr int kBitsOfLength = 4;
// The head is the last symbol, or with this flag the only one.
constexpr std::uint16_t kIsSingle = 0x8000;
// Streams of up to so many symbols state their sizes in 16 bits, which the longest codes fit.
constexpr std::size_t kMaxSymbolsOfShort = 100'000;
// The symbols that 64 bits hold for sure when the first one begins inside their first byte.
constexpr std::size_t kSymbolsInLoad = 4;

using LengthCounts = std::array<std::uint32_t, kMaxLength + 1>;

// Replaces the weights, which ascend, by the depths of their leaves in a Huffman tree, which
// descend.
// Source: A. Moffat, J. Katajainen on minimum-redundancy codes, WADS 1995.
void replaceByDepths(std::span<std::uint64_t> weights) {
  const std::size_t count = weights.size();
  // Joins the two lightest subtrees; each inner node ends up as the index of its parent.
  std::size_t root = 0;
  std::size_t leaf = 0;
  const auto lightest = [&](std::size_t next) {
    if (leaf >= count || (root < next && weights[root] < weights[leaf])) {
      return std::exchange(weights[root++], next);
    }
    return weights[leaf++];
  };
  for (std::size_t next = 0; next + 1 < count; ++next) {
    const std::uint64_t first = lightest(next);
    weights[next] = first + lightest(next);
  }
  // Parents become depths, from the root on.
  weights[count - 2] = 0;
  for (std::size_t node = count - 2; node-- > 0;) {
    weights[node] = weights[weights[node]] + 1;
  }
  // The nodes of each depth that are no inner ones are leaves.
  std::size_t inner = count - 1;  // inner nodes that are not counted yet
  std::size_t out = count;
  std::size_t available = 1;
  for (std::uint64_t depth = 0; available > 0; ++depth) {
    std::size_t used = 0;
    while (inner > 0 && weights[inner - 1] == depth) {
      ++used;
      --inner;
    }
    for (; available > used; --available) {
      weights[--out] = depth;
    }
    available = 2 * used;
  }
}

// Changes how many codes there are of each length until none is longer than `longest` and all
// together use every code there is.
void limitLengths(LengthCounts& counts, int longest) {
  const auto share = [longest](int length) { return std::int64_t{1} << (longest - length); };
  std::int64_t excess = -share(0);
  for (int length = 1; length <= longest; ++length) {
    excess += static_cast<std::int64_t>(counts[static_cast<std::size_t>(length)]) * share(length);
  }
  // Returns by how much the excess grows.
  const auto move = [&](int from, int to) {
    --counts[static_cast<std::size_t>(from)];
    ++counts[static_cast<std::size_t>(to)];
    return share(to) - share(from);
  };
  for (int length = longest - 1; excess > 0;) {
    if (counts[static_cast<std::size_t>(length)] == 0) {
      --length;
      continue;
    }
    excess += move(length, length + 1);
    length = std::min(length + 1, longest - 1);
  }
  for (int length = 2; excess < 0;) {
    if (counts[static_cast<std::size_t>(length)] == 0 || share(length) > -excess) {
      ++length;
      continue;
    }
    excess += move(length, length - 1);
  }
}

// The first code of each length; codes are assigned by length, then by symbol.
std::array<std::uint32_t, kMaxLength + 1> firstCodes(const LengthCounts& counts) {
  std::array<std::uint32_t, kMaxLength + 1> first{};
  for (std::size_t length = 1; length < first.size(); ++length) {
    first[length] = (first[length - 1] + (length > 1 ? counts[length - 1] : 0)) << 1;
  }
  return first;
}

// Each byte with its bits in the other order.
constexpr std::array<std::uint8_t, 256> kReversed = [] {
  std::array<std::uint8_t, 256> bytes{};
  for (unsigned byte = 0; byte < bytes.size(); ++byte) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      bytes[byte] |= static_cast<std::uint8_t>((byte >> bit & 1) << (7 - bit));
    }
  }
  return bytes;
}();

// The lowest `length` bits, of up to 16, in the other order.
std::uint32_t reversed(std::uint32_t code, int length) {
  constexpr int kBits = 16;
  const std::uint32_t both = std::uint32_t{kReversed[code & 0xFF]} << 8 | kReversed[code >> 8];
  return both >> (kBits - length);
}

// Calls use(symbol, length, code) for each symbol that has a code, by symbol.
template <typename Use>
void forEachCode(std::span<const std::uint8_t> lengths, Use use) {
  LengthCounts counts{};
  for (const std::uint8_t length : lengths) {
    ++counts[length];
  }
  auto next = firstCodes(counts);
  for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
    if (const int length = lengths[symbol]; length > 0) {
      use(symbol, length, reversed(next[lengths[symbol]]++, length));
    }
  }
}

// Sorts the symbols that have codes by their lengths, then by symbol. False where the codes are too
// long, or where not every sequence of bits is the beginning of exactly one.
bool sortByLength(std::span<const std::uint8_t> lengths, LengthCounts& counts,
                  std::span<std::uint16_t> sorted) {
  // Parts of the symbols are counted and sorted at the same time, so that a symbol need not wait
  // for the one before it.
  constexpr std::size_t kParts = 4;
  constexpr std::size_t kLengths = 1 << kBitsOfLength;
  std::array<std::array<std::uint32_t, kLengths>, kParts> next{};
  const std::size_t partSize = (lengths.size() + kParts - 1) / kParts;
  const auto forEach = [&](auto use) {
    for (std::size_t i = 0; i < partSize; ++i) {
      for (std::size_t part = 0; part < kParts; ++part) {
        if (const std::size_t symbol = part * partSize + i; symbol < lengths.size()) {
          use(symbol, next[part][lengths[symbol]]);
        }
      }
    }
  };
  forEach([](std::size_t, std::uint32_t& count) { ++count; });
  std::uint32_t used = 0;  // of all codes, in units of the longest code
  std::uint32_t position = 0;
  for (std::size_t length = 1; length < kLengths; ++length) {
    for (auto& part : next) {
      const std::uint32_t count = std::exchange(part[length], position);
      position += count;
      if (length > kMaxLength && count > 0) {
        return false;
      }
      if (length <= kMaxLength) {
        counts[length] += count;
        used += count << (kMaxLength - length);
      }
    }
  }
  if (used != 1u << kMaxLength) {
    return false;
  }
  // Symbols without a code come last.
  for (auto& part : next) {
    position += std::exchange(part[0], position);
  }
  forEach([&](std::size_t symbol, std::uint32_t& to) {
    sorted[to++] = static_cast<std::uint16_t>(symbol);
  });
  return true;
}

std::size_t sizeOfSizes(std::size_t symbols) {
  return kHuffmanStreams *
         (symbols <= kMaxSymbolsOfShort ? sizeof(std::uint16_t) : sizeof(std::uint32_t));
}

// Writes codes one after another, from bit 0 of the first byte on.
class BitWriter {
 public:
  // There are at least 8 bytes beyond the last one that is written.
  explicit BitWriter(unsigned char* out) : m_out(out) {}

  void put(std::uint32_t code, int length) {
    m_bits |= std::uint64_t{code} << m_count;
    m_count += length;
  }
  // Stores whole bytes; due after at most 56 bits.
  void flush() {
    storePacked(m_out, m_bits);
    m_out += m_count / 8;
    m_bits >>= m_count / 8 * 8;
    m_count %= 8;
  }
  unsigned char* finish() {
    flush();
    return m_out + (m_count > 0);
  }

 private:
  unsigned char* m_out;
  std::uint64_t m_bits = 0;
  int m_count = 0;
};

// Where the next symbols of the streams begin, in bits.
using Positions = std::array<std::size_t, kHuffmanStreams>;

// Decodes groups of symbols as long as loads of 8 bytes stay inside the bytes; returns how many
// symbols that were. There are at least 8 bytes.
[[gnu::always_inline]] inline std::size_t decodeAllGroups(Bytes bytes, const HuffmanTable& table,
                                                          Positions& positions,
                                                          std::span<std::uint16_t> symbols) {
  constexpr std::size_t kStep = kHuffmanStreams * kSymbolsInLoad;
  // Shifted to the lower bits with those before it, this bit says how many have been used.
  constexpr std::uint64_t kMark = std::uint64_t{1} << 63;
  const std::size_t lastLoad = (bytes.size() - sizeof(std::uint64_t)) * 8;
  const std::uint64_t mask = table.symbols.size() - 1;
  const std::uint16_t* const tableSymbols = table.symbols.data();
  const std::uint8_t* const tableLengths = table.lengths.data();
  const unsigned char* const begin = bytes.data();
  std::uint16_t* out = symbols.data();
  const std::uint16_t* const end = out + symbols.size() / kStep * kStep;
  auto [at0, at1, at2, at3] = positions;
  while (out < end && std::max(std::max(at0, at1), std::max(at2, at3)) <= lastLoad) {
    const auto load = [&](std::size_t at) {
      return loadPacked<std::uint64_t>(begin + at / 8) >> at % 8 | kMark;
    };
    std::uint64_t bits0 = load(at0);
    std::uint64_t bits1 = load(at1);
    std::uint64_t bits2 = load(at2);
    std::uint64_t bits3 = load(at3);
    const auto step = [&](std::uint64_t& bits, std::size_t index) {
      const std::uint64_t code = bits & mask;
      bits >>= tableLengths[code];
      out[index] = tableSymbols[code];
    };
    for (std::size_t i = 0; i < kStep; i += kHuffmanStreams) {
      step(bits0, i);
      step(bits1, i + 1);
      step(bits2, i + 2);
      step(bits3, i + 3);
    }
    at0 += static_cast<std::size_t>(std::countl_zero(bits0));
    at1 += static_cast<std::size_t>(std::countl_zero(bits1));
    at2 += static_cast<std::size_t>(std::countl_zero(bits2));
    at3 += static_cast<std::size_t>(std::countl_zero(bits3));
    out += kStep;
  }
  positions = {at0, at1, at2, at3};
  return static_cast<std::size_t>(out - symbols.data());
}

using DecodeGroups = std::size_t (*)(Bytes, const HuffmanTable&, Positions&,
                                     std::span<std::uint16_t>);

std::size_t decodeGroupsPortably(Bytes bytes, const HuffmanTable& table, Positions& positions,
                                 std::span<std::uint16_t> symbols) {
  return decodeAllGroups(bytes, table, positions, symbols);
}

#if defined(__x86_64__)
// Where a shift takes its distance from any register.
[[gnu::target("bmi2")]] std::size_t decodeGroupsWithShifts(Bytes bytes, const HuffmanTable& table,
                                                           Positions& positions,
                                                           std::span<std::uint16_t> symbols) {
  return decodeAllGroups(bytes, table, positions, symbols);
}
#endif

DecodeGroups fastestDecodeGroups() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("bmi2")) {
    return decodeGroupsWithShifts;
  }
#endif
  return decodeGroupsPortably;
}

}  // namespace

// Symbols and their counts by count, then by symbol.
void HuffmanEncoder::orderByCount(std::span<const std::uint32_t> counts) {
  constexpr std::size_t kSmall = 1024;
  std::array<std::uint32_t, kSmall + 1> positions{};
  for (const std::uint32_t count : counts) {
    ++positions[std::min<std::size_t>(count, kSmall)];
  }
  const std::uint32_t large = positions[kSmall];
  positions[0] = 0;  // symbols that do not occur
  std::uint32_t used = 0;
  for (std::uint32_t& position : positions) {
    used += std::exchange(position, used);
  }
  m_order.resize(used);
  for (std::size_t symbol = 0; symbol < counts.size(); ++symbol) {
    if (const std::uint32_t count = counts[symbol]; count > 0) {
      m_order[positions[std::min<std::size_t>(count, kSmall)]++] =
          std::uint64_t{count} << 16 | symbol;
    }
  }
  std::sort(m_order.end() - large, m_order.end());
}

void HuffmanEncoder::fit(std::span<const std::uint32_t> counts) {
  assert(counts.size() <= kMaxHuffmanSymbols);
  orderByCount(counts);
  m_weights.clear();
  m_different = m_order.size();
  std::size_t last = counts.size();
  while (counts[last - 1] == 0) {
    --last;
  }
  m_lengths.assign(last, 0);
  m_symbols = m_bits = 0;
  for (const std::uint64_t each : m_order) {
    m_weights.push_back(each >> 16);
    m_symbols += each >> 16;
  }
  if (m_different == 1) {
    return;
  }
  replaceByDepths(m_weights);
  LengthCounts lengthCounts{};
  for (const std::uint64_t depth : m_weights) {
    ++lengthCounts[std::min<std::size_t>(depth, kLongestWritten)];
  }
  limitLengths(lengthCounts, kLongestWritten);
  // The symbols that occur least get the longest codes.
  std::size_t length = kLongestWritten;
  for (const std::uint64_t each : m_order) {
    while (lengthCounts[length] == 0) {
      --length;
    }
    --lengthCounts[length];
    m_lengths[each & 0xFFFF] = static_cast<std::uint8_t>(length);
    m_bits += (each >> 16) * length;
  }
}

std::size_t HuffmanEncoder::encodedSize() const {
  if (m_different == 1) {
    return sizeof(std::uint16_t);
  }
  return sizeof(std::uint16_t) + packedBitsSize(m_lengths.size(), kBitsOfLength) +
         sizeOfSizes(m_symbols) + (m_bits + 7) / 8;
}

void HuffmanEncoder::assignCodes() {
  m_codes.resize(m_lengths.size());
  forEachCode(m_lengths, [this](std::size_t symbol, int length, std::uint32_t code) {
    m_codes[symbol] = {static_cast<std::uint16_t>(code), static_cast<std::uint16_t>(length)};
  });
}

void HuffmanEncoder::append(std::span<const std::uint16_t> symbols, ByteBuffer& out) {
  assignCodes();
  appendCodes(symbols, m_codes.data(), out);
}

void HuffmanEncoder::append(std::span<const std::uint16_t> values,
                            std::span<const std::uint16_t> symbolOf, ByteBuffer& out) {
  assignCodes();
  // Values that do not occur may have no symbol.
  m_codes.resize(kMaxHuffmanSymbols);
  m_codesOfValues.resize(symbolOf.size());
  std::transform(symbolOf.begin(), symbolOf.end(), m_codesOfValues.begin(),
                 [this](std::uint16_t symbol) { return m_codes[symbol]; });
  appendCodes(values, m_codesOfValues.data(), out);
}

void HuffmanEncoder::appendCodes(std::span<const std::uint16_t> values, const Code* codes,
                                 ByteBuffer& out) {
  const auto last = static_cast<std::uint16_t>(m_lengths.size() - 1);
  if (m_different == 1) {
    return out.put(static_cast<std::uint16_t>(last | kIsSingle));
  }
  out.put(last);
  packBits(m_lengths, kBitsOfLength, out.append(packedBitsSize(m_lengths.size(), kBitsOfLength)));
  const bool isShort = values.size() <= kMaxSymbolsOfShort;
  const std::size_t sizes = out.size();
  const std::size_t begin = sizes + sizeOfSizes(values.size());
  // Bits that symbols beyond the counts would take are spared here.
  const std::size_t perStream = values.size() / kHuffmanStreams + 1;
  out.resize(begin + kHuffmanStreams * (perStream * kLongestWritten / 8 + 1) + 8);
  unsigned char* to = out.data() + begin;
  for (std::size_t stream = 0; stream < kHuffmanStreams; ++stream) {
    BitWriter bits(to);
    std::size_t i = stream;
    constexpr std::size_t kStep = kHuffmanStreams * kSymbolsInLoad;
    for (; i + kStep <= values.size(); i += kStep) {
      for (std::size_t j = i; j < i + kStep; j += kHuffmanStreams) {
        bits.put(codes[values[j]].bits, codes[values[j]].length);
      }
      bits.flush();
    }
    for (; i < values.size(); i += kHuffmanStreams) {
      bits.put(codes[values[i]].bits, codes[values[i]].length);
      bits.flush();
    }
    unsigned char* end = bits.finish();
    const auto size = static_cast<std::uint32_t>(end - to);
    if (isShort) {
      storePacked(out.data() + sizes + 2 * stream, static_cast<std::uint16_t>(size));
    } else {
      storePacked(out.data() + sizes + 4 * stream, size);
    }
    to = end;
  }
  out.resize(static_cast<std::size_t>(to - out.data()));
}

bool HuffmanDecoder::take(ByteReader& reader, std::size_t count) {
  m_remaining = count;
  std::uint16_t head = 0;
  if (!reader.read(head)) {
    return false;
  }
  m_isSingle = (head & kIsSingle) != 0;
  m_alphabetSize = (head & (kIsSingle - 1)) + std::size_t{1};
  if (m_alphabetSize > kMaxHuffmanSymbols) {
    return false;
  }
  return m_isSingle || (takeLengths(reader) && takeStreams(reader));
}

bool HuffmanDecoder::takeLengths(ByteReader& reader) {
  Bytes packed;
  if (!reader.readBytes(packedBitsSize(m_alphabetSize, kBitsOfLength), packed)) {
    return false;
  }
  std::array<std::uint8_t, kMaxHuffmanSymbols + 1> lengths;
  for (std::size_t i = 0; i < packed.size(); ++i) {
    lengths[2 * i] = packed[i] & 0xF;
    lengths[2 * i + 1] = packed[i] >> kBitsOfLength;
  }
  return m_table.fill({lengths.data(), m_alphabetSize});
}

// The table for codes of one length consists of two copies of that for codes of one bit less, and
// of the codes that are new.
bool HuffmanTable::fill(std::span<const std::uint8_t> codeLengths) {
  LengthCounts counts{};
  std::array<std::uint16_t, kMaxHuffmanSymbols> sorted;
  if (!sortByLength(codeLengths, counts, sorted)) {
    return false;
  }
  std::size_t longest = kMaxLength;
  while (counts[longest] == 0) {
    --longest;
  }
  symbols.resize(std::size_t{1} << longest);
  lengths.resize(symbols.size());
  const auto first = firstCodes(counts);
  const std::uint16_t* next = sorted.data();
  for (std::size_t length = 1, half = 1; length <= longest; ++length, half *= 2) {
    std::copy_n(symbols.begin(), half, symbols.begin() + static_cast<std::ptrdiff_t>(half));
    std::copy_n(lengths.begin(), half, lengths.begin() + static_cast<std::ptrdiff_t>(half));
    for (std::uint32_t i = 0; i < counts[length]; ++i) {
      const std::uint32_t code = reversed(first[length] + i, static_cast<int>(length));
      symbols[code] = *next++;
      lengths[code] = static_cast<std::uint8_t>(length);
    }
  }
  return true;
}

bool HuffmanDecoder::takeStreams(ByteReader& reader) {
  std::array<std::size_t, kHuffmanStreams> sizes;
  for (std::size_t& size : sizes) {
    std::uint16_t shortSize = 0;
    std::uint32_t longSize = 0;
    if (m_remaining <= kMaxSymbolsOfShort ? !reader.read(shortSize) : !reader.read(longSize)) {
      return false;
    }
    size = shortSize + std::size_t{longSize};
  }
  std::size_t begin = 0;
  for (std::size_t i = 0; i < kHuffmanStreams; ++i) {
    const std::size_t symbols = (m_remaining + kHuffmanStreams - 1 - i) / kHuffmanStreams;
    if (symbols > sizes[i] * 8) {
      return false;  // a symbol takes a bit at least
    }
    m_streams[i] = {begin * 8, (begin + sizes[i]) * 8};
    begin += sizes[i];
  }
  return reader.readBytes(begin, m_bytes);
}

// Decodes groups of symbols as long as a load of 8 bytes stays inside the bytes; returns how many
// symbols that were.
std::size_t HuffmanDecoder::nextQuickly(std::span<std::uint16_t> symbols) {
  if (m_bytes.size() < sizeof(std::uint64_t)) {
    return 0;
  }
  Positions positions;
  for (std::size_t i = 0; i < kHuffmanStreams; ++i) {
    positions[i] = m_streams[i].position;
  }
  static const DecodeGroups decodeGroups = fastestDecodeGroups();
  const std::size_t done = decodeGroups(m_bytes, m_table, positions, symbols);
  for (std::size_t i = 0; i < kHuffmanStreams; ++i) {
    m_streams[i].position = positions[i];
  }
  return done;
}

bool HuffmanDecoder::next(std::span<std::uint16_t> symbols) {
  assert(symbols.size() <= m_remaining);
  m_remaining -= symbols.size();
  if (m_isSingle) {
    std::fill(symbols.begin(), symbols.end(), static_cast<std::uint16_t>(m_alphabetSize - 1));
    return true;
  }
  for (std::size_t i = nextQuickly(symbols); i < symbols.size(); ++i) {
    Stream& stream = m_streams[i % kHuffmanStreams];
    const std::size_t first = std::min(stream.position / 8, m_bytes.size());
    std::uint32_t bits = 0;
    std::memcpy(&bits, m_bytes.data() + first, std::min(sizeof bits, m_bytes.size() - first));
    const std::size_t code = bits >> stream.position % 8 & (m_table.symbols.size() - 1);
    symbols[i] = m_table.symbols[code];
    stream.position += m_table.lengths[code];
  }
  return m_remaining > 0 || areStreamsSound();
}

// Each stream has ended in its last byte.
bool HuffmanDecoder::areStreamsSound() const {
  return std::all_of(m_streams.begin(), m_streams.end(), [](const Stream& stream) {
    return stream.position <= stream.end && stream.end - stream.position < 8;
  });
}

}  // namespace kelvarin
