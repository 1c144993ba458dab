#include <algorithm>
#include <vector>

#include "columnar/codecs/number_encoding.h"
#include "columnar/codecs/number_integers.h"
#include "columnar/codecs/number_kernels.h"
#include "columnar/codecs/short_number.h"

namespace kelvarin {

namespace {

constexpr std::size_t kNumberSize = sizeof(double);

// The marks of all rows, several in an item.
struct Marks {
  int bits = 0;
  std::vector<std::uint16_t> items;
  std::size_t others = 0;  // rows that have a number of their own
};

std::size_t countOthersIn(std::uint32_t item, int bits) {
  const std::uint32_t other = markOfOthers(bits);
  std::size_t count = 0;
  for (std::size_t i = 0; i < marksInItem(bits); ++i) {
    count += (item >> (i * static_cast<std::size_t>(bits)) & other) == other;
  }
  return count;
}

// The marks after the last row are 0.
bool take(ByteReader& reader, std::size_t rows, Marks& marks) {
  const std::size_t inItem = marksInItem(marks.bits);
  const auto itemBits = static_cast<int>(inItem) * marks.bits;
  IntegerColumn column;
  const std::size_t count = (rows + inItem - 1) / inItem;
  if (!column.take(reader, count, markOfOthers(itemBits))) {
    return false;
  }
  marks.items.resize(count);
  for (std::size_t done = 0; done < count;) {
    const std::span<const std::uint64_t> batch = column.nextNumbers();
    if (batch.empty()) {
      return false;
    }
    for (const std::uint64_t item : batch) {
      marks.items[done++] = static_cast<std::uint16_t>(item);
      marks.others += item == 0 ? 0 : countOthersIn(static_cast<std::uint32_t>(item), marks.bits);
    }
  }
  const std::size_t inLast = rows - (count - 1) * inItem;
  return marks.items.back() >> (inLast * static_cast<std::size_t>(marks.bits)) == 0;
}

bool takeIntegers(ByteReader& reader, const NumberScale& scale, std::size_t count,
                  unsigned char* numbers) {
  if (count == 0) {
    return true;
  }
  IntegerColumn column;
  std::uint64_t first = 0;
  IntegerSteps steps;
  if (!readShortNumber(reader, first) || !readShortNumber(reader, steps.step)) {
    return false;
  }
  steps.first = static_cast<std::uint64_t>(kernels::zigzagDecoded(first)) + offsetOf(scale);
  if (!steps.isSound(scale) || !column.take(reader, count, steps.largest(scale))) {
    return false;
  }
  for (std::size_t done = 0; done < count;) {
    const std::span<const std::uint64_t> batch = column.nextNumbers();
    if (batch.empty()) {
      return false;
    }
    kernels::makeNumbers(batch, scale, steps, numbers + done * kNumberSize);
    done += batch.size();
  }
  return true;
}

// The others fill the rest of the bytes. There is memory for one more.
bool takeOthers(ByteReader& reader, std::size_t count, ByteBuffer& others) {
  Bytes rest;
  if (count == 0) {
    return reader.remaining() == 0;
  }
  int unknownEncoding = -1;
  if (!reader.readBytes(reader.remaining(), rest) || rest.empty() ||
      rest[0] == static_cast<std::uint8_t>(NumberEncoding::integers) ||
      decodeNumbers(rest, static_cast<std::uint32_t>(count), others, unknownEncoding) !=
          ReadStatus::ok) {
    return false;
  }
  repeatToSize(count, others);
  others.resize((count + 1) * kNumberSize);
  return true;
}

// Corrects the numbers, which are in the order of the rows already.
template <int kBits>
void correct(const Marks& marks, std::size_t rows, unsigned char* numbers) {
  constexpr std::size_t kInItem = marksInItem(kBits);
  const auto correctOne = [&](std::size_t row, std::uint32_t item) {
    const std::uint32_t mark =
        item >> (row % kInItem * static_cast<std::size_t>(kBits)) & markOfOthers(kBits);
    unsigned char* number = numbers + row * kNumberSize;
    const auto correction = static_cast<std::uint64_t>(kernels::zigzagDecoded(mark));
    storePacked(number, loadPacked<std::uint64_t>(number) + correction);
  };
  const std::size_t whole = rows / kInItem;
  for (std::size_t item = 0; item < whole; ++item) {
    for (std::size_t i = 0; i < kInItem; ++i) {
      correctOne(item * kInItem + i, marks.items[item]);
    }
  }
  for (std::size_t row = whole * kInItem; row < rows; ++row) {
    correctOne(row, marks.items[whole]);
  }
}

// Moves numbers from behind to their rows, corrects them, and puts the others between them. What is
// read is never before what is written. One number may be read behind each of the two.
template <int kBits>
void scatter(const Marks& marks, std::size_t rows, const unsigned char* others,
             unsigned char* numbers) {
  constexpr std::size_t kInItem = marksInItem(kBits);
  constexpr std::uint32_t kOther = markOfOthers(kBits);
  const unsigned char* from = numbers + marks.others * kNumberSize;
  unsigned char* to = numbers;
  for (std::size_t item = 0; item < marks.items.size(); ++item) {
    std::uint32_t bits = marks.items[item];
    const std::size_t inItem = std::min(kInItem, rows - item * kInItem);
    if (bits == 0 && inItem == kInItem) {
      std::memmove(to, from, kInItem * kNumberSize);
      to += kInItem * kNumberSize;
      from += kInItem * kNumberSize;
      continue;
    }
    for (std::size_t i = 0; i < inItem; ++i) {
      const std::uint32_t mark = bits & kOther;
      const bool isOther = mark == kOther;
      const auto correction = static_cast<std::uint64_t>(kernels::zigzagDecoded(mark));
      const auto ofInteger = loadPacked<std::uint64_t>(from) + correction;
      const auto other = loadPacked<std::uint64_t>(others);
      storePacked(to, isOther ? other : ofInteger);
      from += isOther ? 0 : kNumberSize;
      others += isOther ? kNumberSize : 0;
      to += kNumberSize;
      bits >>= kBits;
    }
  }
}

template <int kBits>
void finish(const Marks& marks, std::size_t rows, const unsigned char* others,
            unsigned char* numbers) {
  if (marks.others == 0) {
    correct<kBits>(marks, rows, numbers);
  } else {
    scatter<kBits>(marks, rows, others, numbers);
  }
}

void finishAll(const Marks& marks, std::size_t rows, const unsigned char* others,
               unsigned char* numbers) {
  switch (marks.bits) {
    case 1:
      return finish<1>(marks, rows, others, numbers);
    case 2:
      return finish<2>(marks, rows, others, numbers);
    case 4:
      return finish<4>(marks, rows, others, numbers);
    case 8:
      return finish<8>(marks, rows, others, numbers);
    case kMaxMarkBits:
      return finish<kMaxMarkBits>(marks, rows, others, numbers);
    default:
      return;
  }
}

}  // namespace

bool decodeIntegerNumbers(ByteReader& reader, std::size_t rows, ByteBuffer& numbers) {
  const std::size_t size = reader.remaining();
  std::uint32_t stated = 0;
  std::uint8_t kind = 0;
  std::uint8_t exponent = 0;
  std::uint8_t markBits = 0;
  if (!reader.read(stated) || !reader.read(kind) || !reader.read(exponent) ||
      !reader.read(markBits) || stated != rows || !isMarkWidth(markBits) ||
      rows * kNumberSize > maximumIntegerNumbersSize(size)) {
    return false;
  }
  const NumberScale scale{static_cast<NumberScale::Kind>(kind), exponent};
  Marks marks{.bits = markBits, .items = {}, .others = 0};
  if (!scale.isSound() || (markBits > 0 && !take(reader, rows, marks))) {
    return false;
  }
  numbers.resize((rows + 1) * kNumberSize);
  ByteBuffer others;
  if (!takeIntegers(reader, scale, rows - marks.others,
                    numbers.data() + marks.others * kNumberSize) ||
      !takeOthers(reader, marks.others, others)) {
    return false;
  }
  finishAll(marks, rows, others.data(), numbers.data());
  numbers.resize(rows * kNumberSize);
  return true;
}

}  // namespace kelvarin
