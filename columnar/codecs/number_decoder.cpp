#include <algorithm>
#include <array>
#include <bit>

#include "columnar/codecs/number_encoding.h"
#include "columnar/codecs/number_kernels.h"

namespace kelvarin {

namespace {

constexpr std::size_t kNumberSize = sizeof(double);

// What precedes the codes of scaled numbers.
struct ScaledHead {
  std::uint8_t exponent = 0;
  std::uint8_t bits = 0;
  std::uint8_t hasMissing = 0;
  std::int64_t base = 0;

  bool isSound() const {
    constexpr std::int64_t kLargestBase = std::int64_t{1} << kBaseBits;
    return exponent <= kMaxExponent && hasMissing <= 1 && base >= -kLargestBase &&
           base <= kLargestBase;
  }
};

bool take(ByteReader& reader, ScaledHead& head) {
  return reader.read(head.exponent) && reader.read(head.bits) && reader.read(head.hasMissing) &&
         reader.read(head.base) && head.isSound();
}

// Reads `size` bytes, which must be all that remain.
bool takeAll(ByteReader& reader, std::size_t size, Bytes& bytes) {
  return reader.remaining() == size && reader.readBytes(size, bytes);
}

unsigned char* resized(ByteBuffer& numbers, std::size_t rows) {
  numbers.resize(rows * kNumberSize);
  return numbers.data();
}

bool decodePlain(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  Bytes bytes;
  if (!takeAll(reader, rows * kNumberSize, bytes)) {
    return false;
  }
  std::copy(bytes.begin(), bytes.end(), resized(numbers, rows));
  return true;
}

using Unscale = void (*)(const LoadedCodes&, const kernels::Scale&, unsigned char*);

bool decodeCodes(ByteReader& reader, std::size_t rows, ByteBuffer& numbers, Unscale unscale) {
  ScaledHead head;
  if (!take(reader, head)) {
    return false;
  }
  const auto width = codeWidthOf(head.bits);
  Bytes codes;
  if (!width || !takeAll(reader, codesSize(rows, *width), codes)) {
    return false;
  }
  // Codes of 0 bits are all equal, so one number stands for all rows.
  const std::size_t stored = head.bits == 0 ? 1 : rows;
  const std::uint64_t missing =
      head.hasMissing != 0 ? (std::uint64_t{1} << head.bits) - 1 : UINT64_MAX;
  unscale(LoadedCodes(codes.data(), stored, *width),
          {.missing = missing, .base = head.base, .exponent = head.exponent},
          resized(numbers, stored));
  return true;
}

bool decodeFrameOfReference(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  return decodeCodes(reader, rows, numbers, kernels::unscale);
}

bool decodeDelta(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  return decodeCodes(reader, rows, numbers, kernels::unscaleDeltas);
}

bool decodeInnerFrameOfReference(ByteReader& reader, std::size_t count, ByteBuffer& numbers) {
  if (!decodeFrameOfReference(reader, count, numbers)) {
    return false;
  }
  repeatToSize(count, numbers);
  return true;
}

// The numbers inside another encoding are its last part.
bool decodeInner(ByteReader& reader, std::size_t count, ByteBuffer& numbers) {
  std::uint8_t encoding = 0;
  if (!reader.read(encoding)) {
    return false;
  }
  switch (static_cast<NumberEncoding>(encoding)) {
    case NumberEncoding::plain:
      return decodePlain(reader, count, numbers);
    case NumberEncoding::frameOfReference:
      return decodeInnerFrameOfReference(reader, count, numbers);
    default:
      return false;
  }
}

bool decodeDictionary(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  std::uint8_t last = 0;
  std::uint8_t bits = 0;
  Bytes codes;
  ByteBuffer entries;
  const auto isWidth = [&] { return bits <= 8 && last >> bits == 0; };
  if (!reader.read(last) || !reader.read(bits) || !isWidth() ||
      !reader.readBytes(packedBitsSize(rows, bits), codes) ||
      !decodeInner(reader, last + std::size_t{1}, entries)) {
    return false;
  }
  // The table has an entry for every value of a code.
  std::array<std::uint64_t, kMaxNumberDictionary> table{};
  std::memcpy(table.data(), entries.data(), entries.size());
  const std::size_t stored = bits == 0 ? 1 : rows;
  unsigned char* out = resized(numbers, stored);
  return LoadedCodes(codes.data(), stored, *codeWidthOf(bits))
      .forEachBatch([&](std::size_t first, std::span<const std::uint32_t> batch) {
        for (std::size_t i = 0; i < batch.size(); ++i) {
          storePacked(out + (first + i) * kNumberSize, table[batch[i]]);
        }
        return largestOf(batch) <= last;
      });
}

bool decodeByteStreamSplit(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  std::uint8_t planes = 0;
  Bytes bytes;
  if (!reader.read(planes) || planes == 0 || planes > kMaxPlanes ||
      !takeAll(reader, rows * kNumberSize, bytes)) {
    return false;
  }
  kernels::join(bytes.data(), rows, planes, resized(numbers, rows));
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
  if (!reader.read(common) || !reader.readBytes(packedBitsSize(rows, 1), isOther) ||
      hasBitsPast(isOther, rows)) {
    return false;
  }
  ByteBuffer otherNumbers;
  if (!decodeInner(reader, countBits(isOther), otherNumbers)) {
    return false;
  }
  unsigned char* out = resized(numbers, rows);
  for (std::size_t i = 0; i < rows; ++i) {
    storePacked(out + i * kNumberSize, common);
  }
  scatter(isOther, otherNumbers.data(), out);
  return true;
}

using Decode = bool (*)(ByteReader&, std::size_t, ByteBuffer&);
// In the order of NumberEncoding.
constexpr Decode kDecoders[] = {decodePlain,           decodeFrameOfReference, decodeDictionary,
                                decodeByteStreamSplit, decodeSparse,           decodeDelta,
                                decodeIntegerNumbers};

}  // namespace

void repeatToSize(std::size_t count, ByteBuffer& numbers) {
  if (numbers.size() == count * kNumberSize) {
    return;
  }
  const auto number = loadPacked<std::uint64_t>(numbers.data());
  numbers.resize(count * kNumberSize);
  for (std::size_t i = 1; i < count; ++i) {
    storePacked(numbers.data() + i * kNumberSize, number);
  }
}

ReadStatus decodeNumbers(Bytes bytes, std::uint32_t rows, ByteBuffer& numbers,
                         int& unknownEncoding) {
  ByteReader reader(bytes);
  std::uint8_t encoding = 0;
  if (!reader.read(encoding)) {
    return ReadStatus::corrupted;
  }
  if (encoding >= std::size(kDecoders)) {
    unknownEncoding = encoding;
    return ReadStatus::corrupted;
  }
  return kDecoders[encoding](reader, rows, numbers) ? ReadStatus::ok : ReadStatus::corrupted;
}

}  // namespace kelvarin
