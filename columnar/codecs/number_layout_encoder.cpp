#include <algorithm>
#include <array>
#include <bit>
#include <optional>

#include "base/null_number.h"
#include "columnar/codecs/number_kernels.h"
#include "columnar/codecs/number_layout.h"
#include "columnar/codecs/number_sample.h"
#include "columnar/codecs/snappy_stream.h"

namespace kelvarin {

namespace {

using Numbers = std::span<const std::uint64_t>;

constexpr int kMostExponentTries = 3;

Bytes bytesOf(Numbers numbers) {
  return {reinterpret_cast<const unsigned char*>(numbers.data()), numbers.size_bytes()};
}

// What compression leaves of a thousand bytes of a plane that has one byte only, in the sample.
constexpr std::size_t kPerMilleLeft = 50;

}  // namespace

// Numbers as integers of a power of ten, which are in m_integers.
struct NumberLayoutEncoder::Scaling {
  int exponent = 0;
  kernels::ScaledRange range;
  std::optional<CodeWidth> width;  // with room for the code that means missing

  std::size_t sizeOf(std::size_t count) const { return codesSize(count, *width); }
};

struct NumberLayoutEncoder::Choice {
  NumberLayout layout = NumberLayout::plain;
  std::size_t size = 0;            // expected
  std::optional<Scaling> scaling;  // of the numbers, or of those in the dictionary
  int planes = 0;
  std::uint64_t common = 0;

  void take(NumberLayout other, std::size_t otherSize) {
    if (otherSize < size) {
      layout = other;
      size = otherSize;
    }
  }
};

NumberLayoutEncoder::Choice NumberLayoutEncoder::choose(Numbers numbers) {
  const NumberSample sample(numbers);
  const std::size_t rows = numbers.size();
  const bool hasDictionary = fillDictionary(numbers);
  // The different numbers have the same range as all.
  const Numbers different = hasDictionary ? Numbers(m_dictionary) : numbers;
  m_integers.resize(rows);
  Choice choice;
  choice.scaling = findScaling(different, sample.numbers());
  const auto sizeOf = [&](std::size_t count) {
    return choice.scaling ? choice.scaling->sizeOf(count) : count * sizeof(double);
  };
  choice.size = rows * sizeof(double);
  if (choice.scaling) {
    choice.take(NumberLayout::scaled, sizeOf(rows));
  }
  if (hasDictionary) {
    const auto width = codeWidthFor(m_dictionary.size() - 1);
    choice.take(NumberLayout::dictionary, codesSize(rows, *width) + sizeOf(m_dictionary.size()));
  }
  if (sample.timesOfCommonest() * 2 > sample.size()) {
    choice.common = sample.commonest();
    const std::size_t others = kernels::countOthers(numbers, choice.common);
    choice.take(NumberLayout::sparse, sizeof(double) + packedBitsSize(rows, 1) + sizeOf(others));
  }
  // Where numbers come again, compression finds them whole.
  if (choice.layout == NumberLayout::plain && sample.distinct() * 8 > sample.size() * 7) {
    while (choice.planes < kMostPlanes && sample.distinctBytes(choice.planes) == 1) {
      ++choice.planes;
    }
    const auto planes = static_cast<std::size_t>(choice.planes);
    choice.take(NumberLayout::significance,
                choice.size - planes * (rows - rows * kPerMilleLeft / 1000));
  }
  if (choice.layout == NumberLayout::scaled && hasDictionary) {
    choice.scaling = scaleAll(choice.scaling->exponent, numbers);
  }
  return choice;
}

NumberLayoutEncoder::Scaling NumberLayoutEncoder::scaleAll(int exponent, Numbers numbers) {
  Scaling scaling{.exponent = exponent, .range = {}, .width = {}};
  scaling.range = kernels::scale(numbers, exponent, m_integers.data());
  if (scaling.range.isExact && scaling.range.hasValues) {
    const auto largest = static_cast<std::uint64_t>(scaling.range.highest - scaling.range.lowest);
    scaling.width = codeWidthFor(largest + scaling.range.hasMissing);
  }
  return scaling;
}

// The sample may have missed the number with the most decimals, so its exponent is only the first
// to try.
std::optional<NumberLayoutEncoder::Scaling> NumberLayoutEncoder::findScaling(Numbers numbers,
                                                                             Numbers sample) {
  std::optional<int> exponent = exponentFor(sample, 0);
  for (int i = 0; exponent && i < kMostExponentTries; ++i) {
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

// False when there are too many different numbers.
bool NumberLayoutEncoder::fillDictionary(Numbers numbers) {
  constexpr std::size_t kSlots = 1024;
  constexpr int kSlotBits = 10;
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15ull;
  std::array<std::uint16_t, kSlots> slots{};  // place in the dictionary, from 1
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
      if (m_dictionary.size() == kLargestNumberDictionary) {
        return false;
      }
      m_dictionary.push_back(number);
      slots[slot] = static_cast<std::uint16_t>(m_dictionary.size());
    }
    m_codes[i] = static_cast<std::uint8_t>(slots[slot] - 1);
  }
  return true;
}

void NumberLayoutEncoder::append(Numbers numbers, ByteBuffer& out) {
  const Choice choice = choose(numbers);
  if (choice.layout == NumberLayout::scaled) {
    return appendScaledOrDifferences(*choice.scaling, numbers.size(), out);
  }
  out.put(static_cast<std::uint8_t>(choice.layout));
  switch (choice.layout) {
    case NumberLayout::dictionary:
      return appendDictionary(choice.scaling, out);
    case NumberLayout::significance:
      out.put(static_cast<std::uint8_t>(choice.planes));
      return kernels::split(numbers, choice.planes, out.append(numbers.size_bytes()));
    case NumberLayout::sparse:
      return appendSparse(choice, numbers, out);
    default:
      out.append(bytesOf(numbers));
  }
}

// Codes of few bits, which are in m_codes, take a byte each where compression makes more of that.
CodeWidth NumberLayoutEncoder::widthOfBytes(CodeWidth width) const {
  constexpr CodeWidth kByte{1, 0};
  const bool hasFewBits = width.lowBytes == 0 && width.highBits > 0;
  return hasFewBits && doesCompressBelow(m_codes, width.bits()) ? kByte : width;
}

void NumberLayoutEncoder::appendScaled(const Scaling& scaling, std::size_t rows, ByteBuffer& out) {
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
  kernels::storeScaled(integers, base, width, out.append(codesSize(rows, width)));
}

void NumberLayoutEncoder::appendScaledOrDifferences(const Scaling& scaling, std::size_t rows,
                                                    ByteBuffer& out) {
  const std::size_t begin = out.size();
  const std::span<const std::int64_t> integers(m_integers.data(), rows);
  const Differences differences = differencesOf(integers, scaling.width->bits());
  if (differences != Differences::large && appendDifferences(scaling, rows, out)) {
    if (differences == Differences::tiny) {
      return;
    }
    // The sample does not tell which takes less.
    m_candidate.clear();
    m_candidate.append(out.bytes(begin));
    out.resize(begin);
  } else {
    m_candidate.clear();
  }
  out.put(static_cast<std::uint8_t>(NumberLayout::scaled));
  appendScaled(scaling, rows, out);
  if (!m_candidate.isEmpty() && compressedSize(m_candidate.bytes(), m_compressed) <
                                    compressedSize(out.bytes(begin), m_compressed)) {
    out.resize(begin);
    out.append(m_candidate.bytes());
  }
}

// False, and nothing appended, when a difference does not fit.
bool NumberLayoutEncoder::appendDifferences(const Scaling& scaling, std::size_t rows,
                                            ByteBuffer& out) {
  m_differences.resize(rows);
  std::uint32_t largest = 0;
  if (!kernels::takeDifferences({m_integers.data(), rows}, scaling.range.lowest,
                                m_differences.data(), largest)) {
    return false;
  }
  const CodeWidth width = *codeWidthFor(std::uint64_t{largest} + scaling.range.hasMissing);
  out.put(static_cast<std::uint8_t>(NumberLayout::differences));
  out.put(static_cast<std::uint8_t>(scaling.exponent));
  out.put(static_cast<std::uint8_t>(width.bits()));
  out.put(static_cast<std::uint8_t>(scaling.range.hasMissing));
  out.put(scaling.range.lowest);
  const StoredCodes codes(out.append(codesSize(rows, width)), rows, width);
  for (std::size_t first = 0; first < rows; first += kRowsInPiece) {
    codes.store(first, {m_differences.data() + first, std::min(kRowsInPiece, rows - first)});
  }
  return true;
}

void NumberLayoutEncoder::appendDictionary(const std::optional<Scaling>& scaling, ByteBuffer& out) {
  const CodeWidth width = widthOfBytes(*codeWidthFor(m_dictionary.size() - 1));
  out.put(static_cast<std::uint8_t>(m_dictionary.size() - 1));
  out.put(static_cast<std::uint8_t>(width.bits()));
  packBits(m_codes, width.bits(), out.append(codesSize(m_codes.size(), width)));
  appendInner(scaling, m_dictionary, out);
}

void NumberLayoutEncoder::appendSparse(const Choice& choice, Numbers numbers, ByteBuffer& out) {
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

// The layout byte and numbers inside another layout: scaled like the others when not all are
// missing.
void NumberLayoutEncoder::appendInner(const std::optional<Scaling>& outer, Numbers numbers,
                                      ByteBuffer& out) {
  if (outer) {
    const Scaling scaling = scaleAll(outer->exponent, numbers);
    if (scaling.width) {
      out.put(static_cast<std::uint8_t>(NumberLayout::scaled));
      return appendScaled(scaling, numbers.size(), out);
    }
  }
  out.put(static_cast<std::uint8_t>(NumberLayout::plain));
  out.append(bytesOf(numbers));
}

}  // namespace kelvarin
