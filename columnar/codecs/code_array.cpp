#include "columnar/codecs/code_array.h"

#include <array>
#include <bit>
#include <utility>

#include "base/byte_cursor.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kelvarin {

namespace {

constexpr int kWidestWithHighPart = 24;
constexpr int kWidest = 32;
constexpr std::size_t kGroup = 8;  // the codes that fill whole bytes

template <int kBits>
void packGroups(std::span<const std::uint8_t> codes, unsigned char* out) {
  const auto packed = [&](std::size_t first, std::size_t count) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < count; ++i) {
      bits |= std::uint64_t{codes[first + i]} << (kBits * static_cast<int>(i));
    }
    return bits;
  };
  const std::size_t whole = codes.size() / kGroup * kGroup;
  for (std::size_t first = 0; first < whole; first += kGroup, out += kBits) {
    const std::uint64_t bits = packed(first, kGroup);
    std::memcpy(out, &bits, kBits);
  }
  const std::uint64_t bits = packed(whole, codes.size() - whole);
  std::memcpy(out, &bits, packedBitsSize(codes.size() - whole, kBits));
}

// Sets the bits of `codes` from `shift` on to the unpacked codes.
template <int kBits>
void unpackGroups(const unsigned char* packed, std::size_t count, int shift, std::uint32_t* codes) {
  constexpr std::uint64_t kMask = (1u << kBits) - 1;
  const auto unpack = [&](std::uint64_t bits, std::size_t first, std::size_t codeCount) {
    for (std::size_t i = 0; i < codeCount; ++i) {
      const std::uint64_t code = bits >> (kBits * static_cast<int>(i)) & kMask;
      codes[first + i] |= static_cast<std::uint32_t>(code) << shift;
    }
  };
  const std::size_t whole = count / kGroup * kGroup;
  for (std::size_t first = 0; first < whole; first += kGroup, packed += kBits) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, packed, kBits);
    unpack(bits, first, kGroup);
  }
  std::uint64_t bits = 0;
  std::memcpy(&bits, packed, packedBitsSize(count - whole, kBits));
  unpack(bits, whole, count - whole);
}

#if defined(__x86_64__)
// Where the codes of a group lie. A code of at most 8 bits lies in two bytes.
template <int kBits>
struct GroupLayout {
  alignas(32) std::array<std::uint8_t, 32> bytes{};      // both bytes of each code, for a shuffle
  alignas(32) std::array<std::uint32_t, kGroup> shifts;  // of each code in its bytes

  constexpr GroupLayout() : shifts() {
    constexpr std::uint8_t kZero = 0x80;
    bytes.fill(kZero);
    for (std::size_t i = 0; i < kGroup; ++i) {
      bytes[4 * i] = static_cast<std::uint8_t>(i * kBits / 8);
      bytes[4 * i + 1] = static_cast<std::uint8_t>(i * kBits / 8 + 1);
      shifts[i] = i * kBits % 8;
    }
  }
};

// The same, a group with each step.
template <int kBits>
[[gnu::target("avx2")]] void unpackWide(const unsigned char* packed, std::size_t count, int shift,
                                        std::uint32_t* codes) {
  static constexpr GroupLayout<kBits> kLayout;
  const __m256i bytes = _mm256_load_si256(reinterpret_cast<const __m256i*>(kLayout.bytes.data()));
  const __m256i shifts = _mm256_load_si256(reinterpret_cast<const __m256i*>(kLayout.shifts.data()));
  const __m256i mask = _mm256_set1_epi32((1 << kBits) - 1);
  const __m128i distance = _mm_cvtsi32_si128(shift);
  std::size_t first = 0;
  // A group is read with 8 bytes.
  for (std::size_t left = packedBitsSize(count, kBits);
       left >= sizeof(std::uint64_t) && first + kGroup <= count;
       left -= kBits, packed += kBits, first += kGroup) {
    const auto bits = loadPacked<std::int64_t>(packed);
    const __m256i pairs = _mm256_shuffle_epi8(_mm256_set1_epi64x(bits), bytes);
    const __m256i unpacked = _mm256_and_si256(_mm256_srlv_epi32(pairs, shifts), mask);
    auto* to = reinterpret_cast<__m256i_u*>(codes + first);
    _mm256_storeu_si256(
        to, _mm256_or_si256(_mm256_loadu_si256(to), _mm256_sll_epi32(unpacked, distance)));
  }
  unpackGroups<kBits>(packed, count - first, shift, codes + first);
}
#endif

using Pack = void (*)(std::span<const std::uint8_t>, unsigned char*);
using Unpack = void (*)(const unsigned char*, std::size_t, int, std::uint32_t*);
constexpr Pack kPacks[] = {nullptr,       packGroups<1>, packGroups<2>,
                           packGroups<3>, packGroups<4>, packGroups<5>,
                           packGroups<6>, packGroups<7>, packGroups<8>};
constexpr Unpack kUnpacks[] = {nullptr,         unpackGroups<1>, unpackGroups<2>,
                               unpackGroups<3>, unpackGroups<4>, unpackGroups<5>,
                               unpackGroups<6>, unpackGroups<7>, unpackGroups<8>};
#if defined(__x86_64__)
constexpr Unpack kWideUnpacks[] = {nullptr,       unpackWide<1>, unpackWide<2>,
                                   unpackWide<3>, unpackWide<4>, unpackWide<5>,
                                   unpackWide<6>, unpackWide<7>, unpackWide<8>};
#endif

const Unpack* fastestUnpacks() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) {
    return kWideUnpacks;
  }
#endif
  return kUnpacks;
}

template <typename Low>
void storeLow(std::span<const std::uint32_t> codes, unsigned char* out) {
  for (std::size_t i = 0; i < codes.size(); ++i) {
    storePacked(out + i * sizeof(Low), static_cast<Low>(codes[i]));
  }
}

template <typename Low>
void loadLow(const unsigned char* low, std::size_t count, std::uint32_t* codes) {
  for (std::size_t i = 0; i < count; ++i) {
    codes[i] = loadPacked<Low>(low + i * sizeof(Low));
  }
}

}  // namespace

std::optional<CodeWidth> codeWidthOf(int bits) {
  if (bits == kWidest) {
    return CodeWidth{4, 0};
  }
  if (bits < 0 || bits > kWidestWithHighPart) {
    return std::nullopt;
  }
  const int lowBytes = std::min(bits / 8, 2);
  return CodeWidth{lowBytes, bits - 8 * lowBytes};
}

std::optional<CodeWidth> codeWidthFor(std::uint64_t largestCode) {
  const int bits = static_cast<int>(std::bit_width(largestCode));
  return codeWidthOf(bits > kWidestWithHighPart && bits < kWidest ? kWidest : bits);
}

std::size_t codesSize(std::size_t rows, CodeWidth width) {
  return rows * static_cast<std::size_t>(width.lowBytes) + packedBitsSize(rows, width.highBits);
}

std::size_t packedBitsSize(std::size_t rows, int bits) {
  return (rows * static_cast<std::size_t>(bits) + 7) / 8;
}

void packBits(std::span<const std::uint8_t> codes, int bits, unsigned char* out) {
  if (bits > 0) {
    kPacks[bits](codes, out);
  }
}

void StoredCodes::store(std::size_t first, std::span<const std::uint32_t> codes) const {
  unsigned char* low = m_low + first * static_cast<std::size_t>(m_width.lowBytes);
  switch (m_width.lowBytes) {
    case 0:
      break;
    case 1:
      storeLow<std::uint8_t>(codes, low);
      break;
    case 2:
      storeLow<std::uint16_t>(codes, low);
      break;
    default:
      storeLow<std::uint32_t>(codes, low);
  }
  if (m_width.highBits > 0) {
    std::uint8_t high[kRowsInBatch];
    for (std::size_t i = 0; i < codes.size(); ++i) {
      const std::uint32_t part = codes[i] >> (8 * m_width.lowBytes);
      high[i] = static_cast<std::uint8_t>(part & ((1u << m_width.highBits) - 1));
    }
    packBits({high, codes.size()}, m_width.highBits,
             m_high + packedBitsSize(first, m_width.highBits));
  }
}

void LoadedCodes::load(std::size_t first, std::size_t count, std::uint32_t* codes) const {
  const unsigned char* low = m_low + first * static_cast<std::size_t>(m_width.lowBytes);
  switch (m_width.lowBytes) {
    case 0:
      std::fill_n(codes, count, 0);
      break;
    case 1:
      loadLow<std::uint8_t>(low, count, codes);
      break;
    case 2:
      loadLow<std::uint16_t>(low, count, codes);
      break;
    default:
      loadLow<std::uint32_t>(low, count, codes);
  }
  if (m_width.highBits > 0) {
    static const Unpack* const unpacks = fastestUnpacks();
    unpacks[m_width.highBits](m_high + packedBitsSize(first, m_width.highBits), count,
                              8 * m_width.lowBytes, codes);
  }
}

std::uint32_t largestOf(std::span<const std::uint32_t> codes) {
  std::uint32_t largest = 0;
  for (const std::uint32_t code : codes) {
    largest = std::max(largest, code);
  }
  return largest;
}

}  // namespace kelvarin
