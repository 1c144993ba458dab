#include <algorithm>
#include <array>
#include <bit>
#include <optional>

#include "base/null_number.h"
#include "columnar/codecs/number_encoding.h"
#include "columnar/codecs/number_kernels.h"
#include "columnar/codecs/number_sample.h"
#include "columnar/codecs/number_scale_search.h"
#include "columnar/codecs/snappy_stream.h"

namespace kelvarin {

namespace {

using Numbers = std::span<const std::uint64_t>;

constexpr int kMaxExponentTries = 3;

Bytes bytesOf(Numbers numbers) {
  return {reinterpret_cast<const unsigned char*>(numbers.data()), numbers.size_bytes()};
}

// The compressed size of a thousand bytes of a plane whose sample has a single byte value.
constexpr std::size_t kPerMilleLeft = 50;

}  // namespace

// How numbers are scaled to integers; these are in m_integers.
struct NumberEncoder::Scaling {
  int exponent = 0;
  kernels::ScaledRange range;
  std::optional<CodeWidth> width;  // wide enough for the code that means missing

  std::size_t sizeOf(std::size_t count) const { return codesSize(count, *width); }
};

struct NumberEncoder::Choice {
  NumberEncoding encoding = NumberEncoding::plain;
  std::size_t size = 0;            // expected
  std::optional<Scaling> scaling;  // of the numbers, or of those in the dictionary
  int planes = 0;
  std::uint64_t common = 0;

  void take(NumberEncoding other, std::size_t otherSize) {
    if (otherSize < size) {
      encoding = other;
      size = otherSize;
    }
  }
};

NumberEncoder::Choice NumberEncoder::choose(Numbers numbers, const NumberSample& sample) {
  const std::size_t rows = numbers.size();
  const bool hasDictionary = fillDictionary(numbers);
  // The different numbers have the same range as all numbers.
  const Numbers different = hasDictionary ? Numbers(m_dictionary) : numbers;
  m_integers.resize(rows);
  Choice choice;
  choice.scaling = findScaling(different, sample.numbers());
  const auto sizeOf = [&](std::size_t count) {
    return choice.scaling ? choice.scaling->sizeOf(count) : count * sizeof(double);
  };
  choice.size = rows * sizeof(double);
  if (choice.scaling) {
    choice.take(NumberEncoding::frameOfReference, sizeOf(rows));
  }
  if (hasDictionary) {
    const auto width = codeWidthFor(m_dictionary.size() - 1);
    choice.take(NumberEncoding::dictionary, codesSize(rows, *width) + sizeOf(m_dictionary.size()));
  }
  if (sample.timesOfCommonest() * 2 > sample.size()) {
    choice.common = sample.commonest();
    const std::size_t others = kernels::countOthers(numbers, choice.common);
    choice.take(NumberEncoding::sparse, sizeof(double) + packedBitsSize(rows, 1) + sizeOf(others));
  }
  // Repeated numbers compress better when their bytes stay together.
  if (choice.encoding == NumberEncoding::plain && sample.areNearlyAllDifferent()) {
    while (choice.planes < kMaxPlanes && sample.distinctBytes(choice.planes) == 1) {
      ++choice.planes;
    }
    const auto planes = static_cast<std::size_t>(choice.planes);
    choice.take(NumberEncoding::byteStreamSplit,
                choice.size - planes * (rows - rows * kPerMilleLeft / 1000));
  }
  if (choice.encoding == NumberEncoding::frameOfReference && hasDictionary) {
    choice.scaling = scaleAll(choice.scaling->exponent, numbers);
  }
  return choice;
}

NumberEncoder::Scaling NumberEncoder::scaleAll(int exponent, Numbers numbers) {
  Scaling scaling{.exponent = exponent, .range = {}, .width = {}};
  scaling.range = kernels::scale(numbers, exponent, m_integers.data());
  if (scaling.range.isExact && scaling.range.hasValues) {
    const auto largest = static_cast<std::uint64_t>(scaling.range.highest - scaling.range.lowest);
    scaling.width = codeWidthFor(largest + scaling.range.hasMissing);
  }
  return scaling;
}

// The sample may lack the number with the most decimals, so its exponent is only the first try.
std::optional<NumberEncoder::Scaling> NumberEncoder::findScaling(Numbers numbers, Numbers sample) {
  std::optional<int> exponent = exponentFor(sample, 0);
  for (int i = 0; exponent && i < kMaxExponentTries; ++i) {
    const Scaling scaling = scaleAll(*exponent, numbers);
    if (scaling.range.isExact) {
      return scaling.width ? std::optional(scaling) : std::nullopt;
    }
    const auto inexact = std::find_if_not(
        numbers.begin(), numbers.end(),
        [&](std::uint64_t number) { return kernels::isExactScaled(number, *exponent); });
    exponent = exponentFor(Numbers(inexact, 1), *exponent + 1);
  }
  return std::nullopt;
}

// False: there are too many different numbers.
bool NumberEncoder::fillDictionary(Numbers numbers) {
  constexpr std::size_t kSlots = 1024;
  constexpr int kSlotBits = 10;
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15ull;
  std::array<std::uint16_t, kSlots> slots{};  // indices in the dictionary, from 1
  m_dictionary.clear();
  m_codes.resize(numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::uint64_t number = numbers[i];
    if (i > 0 && number == numbers[i - 1]) {
      m_codes[i] = m_codes[i - 1];
      continue;
    }
    std::size_t slot = number * kMultiplier >> (64 - kSlotBits);
    while (slots[slot] != 0 && m_dictionary[slots[slot] - 1u] != number) {
      slot = (slot + 1) % kSlots;
    }
    if (slots[slot] == 0) {
      if (m_dictionary.size() == kMaxNumberDictionary) {
        return false;
      }
      m_dictionary.push_back(number);
      slots[slot] = static_cast<std::uint16_t>(m_dictionary.size());
    }
    m_codes[i] = static_cast<std::uint8_t>(slots[slot] - 1);
  }
  return true;
}

void NumberEncoder::append(Numbers numbers, ByteBuffer& out) {
  const NumberSample sample(numbers);
  const Choice choice = choose(numbers, sample);
  if (!appendIntegers(numbers, sample, choice, out)) {
    appendChosen(choice, numbers, out);
  }
}

void NumberEncoder::appendChosen(const Choice& choice, Numbers numbers, ByteBuffer& out) {
  out.put(static_cast<std::uint8_t>(choice.encoding));
  switch (choice.encoding) {
    case NumberEncoding::frameOfReference:
      return appendFrameOfReference(*choice.scaling, numbers.size(), out);
    case NumberEncoding::dictionary:
      return appendDictionary(choice.scaling, out);
    case NumberEncoding::byteStreamSplit:
      out.put(static_cast<std::uint8_t>(choice.planes));
      return kernels::split(numbers, choice.planes, out.append(numbers.size_bytes()));
    case NumberEncoding::sparse:
      return appendSparse(choice, numbers, out);
    default:
      out.append(bytesOf(numbers));
  }
}

// Which part of the bytes of the choice is saved at least where integers replace it. Codes of a
// frame of reference are read faster, above all where many are missing.
double NumberEncoder::leastSaving(const NumberSample& sample, const Choice& choice) {
  if (choice.encoding != NumberEncoding::frameOfReference) {
    return 1.0 / 16;
  }
  const Numbers sampled = sample.numbers();
  const auto missing = std::count(sampled.begin(), sampled.end(), kNullNumberBits);
  return 1.0 / 12 + static_cast<double>(missing) / static_cast<double>(2 * sampled.size());
}

// False, and nothing is appended, where integers of any width are not expected to take less than
// the choice.
bool NumberEncoder::appendIntegers(Numbers numbers, const NumberSample& sample,
                                   const Choice& choice, ByteBuffer& out) {
  constexpr std::size_t kMinNumbers = 32;
  if (numbers.size() < kMinNumbers || choice.encoding == NumberEncoding::dictionary ||
      choice.encoding == NumberEncoding::sparse) {
    return false;
  }
  const auto guess = findScale(
      numbers, sample, choice.scaling ? std::optional(choice.scaling->exponent) : std::nullopt);
  const double limit = static_cast<double>(choice.size) * (1 - leastSaving(sample, choice));
  // A sample that shows hardly enough is often wrong.
  constexpr double kClearly = 0.97;
  const double expected = guess.bits / 8 * static_cast<double>(numbers.size());
  if (expected > limit * kClearly ||
      !m_integerNumbers.encode(numbers, guess.scale, static_cast<std::size_t>(limit))) {
    return false;
  }
  const std::size_t begin = out.size();
  if (mayCompress(sample, choice)) {
    appendChosen(choice, numbers, out);
    if (compressedSize(out.bytes(begin), m_compressed) <= m_integerNumbers.size()) {
      return true;
    }
    out.resize(begin);
  }
  out.put(static_cast<std::uint8_t>(NumberEncoding::integers));
  out.append(m_integerNumbers.bytes());
  const Numbers others = m_integerNumbers.others();
  if (!others.empty()) {
    appendChosen(choose(others, NumberSample(others)), others, out);
  }
  return true;
}

// Whether compression may make the choice smaller than integers: where numbers repeat, or where
// more than a part of plain ones is saved.
bool NumberEncoder::mayCompress(const NumberSample& sample, const Choice& choice) const {
  const std::size_t size = m_integerNumbers.size();
  if (!sample.areNearlyAllDifferent()) {
    return size * 4 > choice.size;
  }
  return choice.encoding != NumberEncoding::frameOfReference && size * 8 > choice.size * 5;
}

// Codes of few bits, which are in m_codes, take a byte each where that compresses better.
CodeWidth NumberEncoder::widthOfBytes(CodeWidth width) const {
  constexpr CodeWidth kByte{1, 0};
  const bool hasFewBits = width.lowBytes == 0 && width.highBits > 0;
  return hasFewBits && doesCompressBelow(m_codes, width.bits()) ? kByte : width;
}

void NumberEncoder::appendFrameOfReference(const Scaling& scaling, std::size_t rows,
                                           ByteBuffer& out) {
  const std::int64_t base = scaling.range.lowest;
  const std::span<const std::int64_t> integers(m_integers.data(), rows);
  CodeWidth width = *scaling.width;
  if (width.lowBytes == 0) {
    m_codes.resize(rows);
    std::transform(integers.begin(), integers.end(), m_codes.begin(), [=](std::int64_t integer) {
      return static_cast<std::uint8_t>(integer == kernels::kMissingInteger ? -1 : integer - base);
    });
    width = widthOfBytes(width);
  }
  out.put(static_cast<std::uint8_t>(scaling.exponent));
  out.put(static_cast<std::uint8_t>(width.bits()));
  out.put(static_cast<std::uint8_t>(scaling.range.hasMissing));
  out.put(base);
  kernels::storeFrameOfReference(integers, base, width, out.append(codesSize(rows, width)));
}

void NumberEncoder::appendDictionary(const std::optional<Scaling>& scaling, ByteBuffer& out) {
  const CodeWidth width = widthOfBytes(*codeWidthFor(m_dictionary.size() - 1));
  out.put(static_cast<std::uint8_t>(m_dictionary.size() - 1));
  out.put(static_cast<std::uint8_t>(width.bits()));
  packBits(m_codes, width.bits(), out.append(codesSize(m_codes.size(), width)));
  appendInner(scaling, m_dictionary, out);
}

void NumberEncoder::appendSparse(const Choice& choice, Numbers numbers, ByteBuffer& out) {
  m_codes.resize(numbers.size());
  m_others.resize(numbers.size());
  std::size_t others = 0;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const bool isOther = numbers[i] != choice.common;
    m_codes[i] = isOther;
    m_others[others] = numbers[i];
    others += isOther;
  }
  m_others.resize(others);
  out.put(choice.common);
  packBits(m_codes, 1, out.append(packedBitsSize(numbers.size(), 1)));
  appendInner(choice.scaling, m_others, out);
}

// The encoding byte and the numbers inside another encoding: a frame of reference with the scale of
// the others, unless all are missing.
void NumberEncoder::appendInner(const std::optional<Scaling>& outer, Numbers numbers,
                                ByteBuffer& out) {
  if (outer) {
    const Scaling scaling = scaleAll(outer->exponent, numbers);
    if (scaling.width) {
      out.put(static_cast<std::uint8_t>(NumberEncoding::frameOfReference));
      return appendFrameOfReference(scaling, numbers.size(), out);
    }
  }
  out.put(static_cast<std::uint8_t>(NumberEncoding::plain));
  out.append(bytesOf(numbers));
}

}  // namespace kelvarin
