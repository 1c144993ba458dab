#include <algorithm>
#include <array>
#include <bit>

#include "columnar/codecs/number_kernels.h"
#include "columnar/codecs/number_layout.h"

namespace kelvarin {

namespace {

constexpr std::size_t kNumberSize = sizeof(double);

// What stands before the codes of the scaled layout.
struct ScaledHead {
  std::uint8_t exponent = 0;
  std::uint8_t bits = 0;
  std::uint8_t hasMissing = 0;
  std::int64_t base = 0;

  bool isSound() const {
    constexpr std::int64_t kLargestBase = std::int64_t{1} << kBaseBits;
    return exponent <= kLargestExponent && hasMissing <= 1 && base >= -kLargestBase &&
           base <= kLargestBase;
  }
};

bool take(ByteReader& reader, ScaledHead& head) {
  return reader.read(head.exponent) && reader.read(head.bits) && reader.read(head.hasMissing) &&
         reader.read(head.base) && head.isSound();
}

// The bytes that must be all that is left.
bool takeAll(ByteReader& reader, std::size_t size, Bytes& bytes) {
  return reader.remaining() == size && reader.readBytes(size, bytes);
}

unsigned char* roomFor(ByteBuffer& numbers, std::size_t rows) {
  numbers.resize(rows * kNumberSize);
  return numbers.data();
}

bool decodePlain(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  Bytes bytes;
  if (!takeAll(reader, rows * kNumberSize, bytes)) {
    return false;
  }
  std::copy(bytes.begin(), bytes.end(), roomFor(numbers, rows));
  return true;
}

bool decodeScaled(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  ScaledHead head;
  if (!take(reader, head)) {
    return false;
  }
  const auto width = kernels::codeWidthOf(head.bits);
  Bytes codes;
  if (!width || !takeAll(reader, kernels::codesSize(rows, *width), codes)) {
    return false;
  }
  kernels::unscale(codes.data(), rows, *width, head.hasMissing != 0, head.base, head.exponent,
                   roomFor(numbers, rows));
  return true;
}

bool areCodesBelow(Bytes codes, std::size_t rows, int bits, std::size_t entries) {
  if (entries == std::size_t{1} << bits) {
    return true;
  }
  const unsigned mask = (1u << bits) - 1;
  const std::size_t inByte = 8 / static_cast<std::size_t>(bits);
  for (std::size_t i = 0; i < rows; ++i) {
    if ((codes[i / inByte] >> (static_cast<std::size_t>(bits) * (i % inByte)) & mask) >= entries) {
      return false;
    }
  }
  return true;
}

bool decodeDictionary(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  std::uint8_t last = 0;
  Bytes entries;
  Bytes codes;
  if (!reader.read(last) || !reader.readBytes((last + std::size_t{1}) * kNumberSize, entries)) {
    return false;
  }
  const std::size_t entryCount = last + std::size_t{1};
  const int bits = kernels::bitsOfCodes(entryCount);
  if (!takeAll(reader, kernels::packedCodesSize(rows, bits), codes) ||
      !areCodesBelow(codes, rows, bits, entryCount)) {
    return false;
  }
  std::array<std::uint64_t, kLargestNumberDictionary> table;
  std::memcpy(table.data(), entries.data(), entries.size());
  kernels::lookUp(codes.data(), rows, bits, table.data(), roomFor(numbers, rows));
  return true;
}

bool decodeSignificance(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  std::uint8_t planes = 0;
  Bytes bytes;
  if (!reader.read(planes) || planes == 0 || planes > kMostPlanes ||
      !takeAll(reader, rows * kNumberSize, bytes)) {
    return false;
  }
  kernels::join(bytes.data(), rows, planes, roomFor(numbers, rows));
  return true;
}

std::size_t countBits(Bytes bits) {
  std::size_t count = 0;
  for (const unsigned char byte : bits) {
    count += static_cast<std::size_t>(std::popcount(byte));
  }
  return count;
}

bool hasBitsPast(Bytes bits, std::size_t rows) {
  return rows % 8 != 0 && bits.back() >> (rows % 8) != 0;
}

void scatter(Bytes isOther, const unsigned char* others, unsigned char* numbers) {
  for (std::size_t byte = 0; byte < isOther.size(); ++byte) {
    for (unsigned bits = isOther[byte]; bits != 0; bits &= bits - 1) {
      const std::size_t row = byte * 8 + static_cast<std::size_t>(std::countr_zero(bits));
      std::memcpy(numbers + row * kNumberSize, others, kNumberSize);
      others += kNumberSize;
    }
  }
}

bool decodeSparse(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  std::uint64_t common = 0;
  Bytes isOther;
  std::uint8_t layout = 0;
  if (!reader.read(common) || !reader.readBytes(kernels::packedCodesSize(rows, 1), isOther) ||
      hasBitsPast(isOther, rows) || !reader.read(layout)) {
    return false;
  }
  const std::size_t others = countBits(isOther);
  ByteBuffer otherNumbers;
  const bool isDecoded = layout == static_cast<std::uint8_t>(NumberLayout::plain)
                             ? decodePlain(reader, others, otherNumbers)
                             : layout == static_cast<std::uint8_t>(NumberLayout::scaled) &&
                                   decodeScaled(reader, others, otherNumbers);
  if (!isDecoded) {
    return false;
  }
  unsigned char* out = roomFor(numbers, rows);
  for (std::size_t i = 0; i < rows; ++i) {
    storePacked(out + i * kNumberSize, common);
  }
  scatter(isOther, otherNumbers.data(), out);
  return true;
}

using Decode = bool (*)(ByteReader&, std::size_t, ByteBuffer&);
// In the order of NumberLayout.
constexpr Decode kDecoders[] = {decodePlain, decodeScaled, decodeDictionary, decodeSignificance,
                                decodeSparse};

}  // namespace

ReadStatus decodeNumbers(Bytes bytes, std::uint32_t rows, ByteBuffer& numbers,
                         int& unknownLayout) {
  ByteReader reader(bytes);
  std::uint8_t layout = 0;
  if (!reader.read(layout)) {
    return ReadStatus::corrupted;
  }
  if (layout >= std::size(kDecoders)) {
    unknownLayout = layout;
    return ReadStatus::corrupted;
  }
  return kDecoders[layout](reader, rows, numbers) ? ReadStatus::ok : ReadStatus::corrupted;
}

}  // namespace kelvarin
