#include "columnar/codecs/row_counts.h"

#include <algorithm>
#include <optional>

#include "columnar/codecs/code_array.h"
#include "columnar/codecs/key_words.h"
#include "columnar/codecs/number_encoding.h"
#include "columnar/codecs/symbol_texts.h"
#include "columnar/codecs/text_encoding.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kNumberSize = sizeof(double);
// The encoding byte of inner numbers, and the most that they take beyond their plain form.
constexpr std::uint64_t kSmallestInner = 1;
constexpr std::uint64_t kLargestInnerHead = 12;

RowCounts within(RowCounts known, std::uint64_t min, std::uint64_t max) {
  const std::uint64_t from = std::max<std::uint64_t>(known.min, min);
  const std::uint64_t to = std::min<std::uint64_t>(known.max, max);
  return from <= to ? RowCounts{static_cast<std::uint32_t>(from), static_cast<std::uint32_t>(to)}
                    : RowCounts::none();
}

// The first word is the number of packed keys; fewer than a group follow them.
RowCounts countsOfKeys(ByteReader& reader, RowCounts known) {
  std::uint32_t packed = 0;
  if (!reader.read(packed) || packed % kKeysInGroup != 0) {
    return RowCounts::none();
  }
  return within(known, packed, std::uint64_t{packed} + kKeysInGroup - 1);
}

RowCounts countOfFixedSize(std::uint64_t bytes, std::uint64_t size, RowCounts known) {
  return bytes % size == 0 ? within(known, bytes / size, bytes / size) : RowCounts::none();
}

// Codes that take from `minBytes` to `maxBytes`.
RowCounts countsOfCodes(int bits, std::uint64_t minBytes, std::uint64_t maxBytes, RowCounts known) {
  if (bits == 0) {
    return minBytes == 0 ? known : RowCounts::none();
  }
  // The high parts of all codes together are filled up to a whole byte.
  const auto width = static_cast<std::uint64_t>(bits);
  const std::uint64_t min = minBytes == 0 ? 0 : (minBytes - 1) * 8 / width;
  return within(known, min, maxBytes * 8 / width);
}

RowCounts countsOfScaled(ByteReader& reader, RowCounts known) {
  constexpr std::size_t kAfterBits = 1 + sizeof(std::int64_t);
  std::uint8_t exponent = 0;
  std::uint8_t bits = 0;
  if (!reader.read(exponent) || !reader.read(bits) || !codeWidthOf(bits) ||
      !reader.skip(kAfterBits)) {
    return RowCounts::none();
  }
  return countsOfCodes(bits, reader.remaining(), reader.remaining(), known);
}

RowCounts countsOfNumberDictionary(ByteReader& reader, RowCounts known) {
  std::uint8_t last = 0;
  std::uint8_t bits = 0;
  if (!reader.read(last) || !reader.read(bits) || bits > 8) {
    return RowCounts::none();
  }
  const std::uint64_t rest = reader.remaining();
  const std::uint64_t largestInner = kLargestInnerHead + (last + 1ull) * kNumberSize;
  return countsOfCodes(bits, rest > largestInner ? rest - largestInner : 0,
                       rest > kSmallestInner ? rest - kSmallestInner : 0, known);
}

// Each row takes a bit, and at most a number.
RowCounts countsOfSparse(ByteReader& reader, RowCounts known) {
  if (!reader.skip(kNumberSize)) {
    return RowCounts::none();
  }
  const std::uint64_t rest = reader.remaining();
  const std::uint64_t rowsOfOthers = rest > kLargestInnerHead ? rest - kLargestInnerHead : 0;
  return within(known, rowsOfOthers / (kNumberSize + 1), rest * 8);
}

RowCounts countOfStated(ByteReader& reader, RowCounts known) {
  std::uint32_t rows = 0;
  return reader.read(rows) ? within(known, rows, rows) : RowCounts::none();
}

RowCounts countsOfNumbers(ByteReader& reader, RowCounts known) {
  std::uint8_t encoding = 0;
  std::uint8_t planes = 0;
  if (!reader.read(encoding)) {
    return RowCounts::none();
  }
  switch (static_cast<NumberEncoding>(encoding)) {
    case NumberEncoding::plain:
      return countOfFixedSize(reader.remaining(), kNumberSize, known);
    case NumberEncoding::frameOfReference:
    case NumberEncoding::delta:
      return countsOfScaled(reader, known);
    case NumberEncoding::dictionary:
      return countsOfNumberDictionary(reader, known);
    case NumberEncoding::byteStreamSplit:
      return reader.read(planes) ? countOfFixedSize(reader.remaining(), kNumberSize, known)
                                 : RowCounts::none();
    case NumberEncoding::sparse:
      return countsOfSparse(reader, known);
    case NumberEncoding::integers:
      return countOfStated(reader, known);
  }
  return RowCounts::none();
}

// The lengths come before the texts, so their number is right when both fill the bytes.
template <typename Length>
RowCounts countOfLengths(Bytes bytes, RowCounts known) {
  constexpr auto kNull = static_cast<Length>(kNullLength);
  std::uint64_t size = 0;
  for (std::uint64_t rows = 1; rows * sizeof(Length) <= bytes.size(); ++rows) {
    const auto length = loadPacked<Length>(bytes.data() + (rows - 1) * sizeof(Length));
    size += sizeof(Length) + (length == kNull ? 0 : length);
    if (size >= bytes.size()) {
      return size == bytes.size() ? within(known, rows, rows) : RowCounts::none();
    }
  }
  return RowCounts::none();
}

RowCounts countsOfPlainTexts(ByteReader& reader, RowCounts known) {
  std::uint8_t width = 0;
  std::uint32_t same = 0;
  Bytes bytes;
  if (!reader.read(width) || (width == 0 && !reader.read(same)) ||
      !reader.readBytes(reader.remaining(), bytes)) {
    return RowCounts::none();
  }
  switch (width) {
    case 0:
      if (byteCountOf(same) == 0) {
        return bytes.empty() ? known : RowCounts::none();
      }
      return countOfFixedSize(bytes.size(), same, known);
    case 1:
      return countOfLengths<std::uint8_t>(bytes, known);
    case 2:
      return countOfLengths<std::uint16_t>(bytes, known);
    case 4:
      return countOfLengths<std::uint32_t>(bytes, known);
    default:
      return RowCounts::none();
  }
}

RowCounts countsOfTextDictionary(ByteReader& reader, RowCounts known) {
  std::uint16_t last = 0;
  std::uint8_t bits = 0;
  if (!reader.read(last) || !reader.read(bits) || bits > 16) {
    return RowCounts::none();
  }
  return countsOfCodes(bits, 0, reader.remaining(), known);
}

RowCounts countsOfTexts(ByteReader& reader, RowCounts known) {
  std::uint8_t encoding = 0;
  if (!reader.read(encoding)) {
    return RowCounts::none();
  }
  switch (static_cast<TextEncoding>(encoding)) {
    case TextEncoding::plain:
      return countsOfPlainTexts(reader, known);
    case TextEncoding::dictionary:
      return countsOfTextDictionary(reader, known);
    case TextEncoding::shaped:
    case TextEncoding::encodedDictionary:
      return countOfStated(reader, known);
    case TextEncoding::symbols:
      return rowCountOfSymbolTexts(reader, known);
    case TextEncoding::frontCoded:
    case TextEncoding::codedEntries:
      break;
  }
  return RowCounts::none();
}

}  // namespace

RowCounts possibleRowCounts(Bytes encoded, GelType type, RowCounts known) {
  ByteReader reader(encoded);
  switch (type) {
    case GelType::key:
      return countsOfKeys(reader, known);
    case GelType::number:
      return countsOfNumbers(reader, known);
    case GelType::text:
      break;
  }
  return countsOfTexts(reader, known);
}

}  // namespace kelvarin
