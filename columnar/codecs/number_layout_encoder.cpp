#include <algorithm>
#include <array>
#include <bit>
#include <optional>

#include "base/null_number.h"
#include "columnar/codecs/number_kernels.h"
#include "columnar/codecs/number_layout.h"

namespace kelvarin {

namespace {

using Numbers = std::span<const std::uint64_t>;

constexpr std::size_t kSampleSize = 64;
// Numbers with more decimals are rarely decimals at all.
constexpr int kMostDecimals = 8;
constexpr int kMostExponentTries = 3;

// A few numbers from all over the block, by which layouts are ruled out early.
class Sample {
 public:
  explicit Sample(Numbers numbers) : m_size(std::min(numbers.size(), kSampleSize)) {
    for (std::size_t i = 0; i < m_size; ++i) {
      m_numbers[i] = numbers[i * numbers.size() / m_size];
    }
    std::sort(m_numbers.begin(), m_numbers.begin() + static_cast<std::ptrdiff_t>(m_size));
    countRuns();
  }

  std::size_t size() const { return m_size; }
  std::size_t distinct() const { return m_distinct; }
  std::uint64_t commonest() const { return m_commonest; }
  std::size_t timesOfCommonest() const { return m_timesOfCommonest; }
  Numbers numbers() const { return {m_numbers.data(), m_size}; }

  std::size_t distinctBytes(int plane) const {
    std::array<bool, 256> isSeen{};
    for (const std::uint64_t number : numbers()) {
      isSeen[number >> (56 - 8 * plane) & 0xFF] = true;
    }
    return static_cast<std::size_t>(std::count(isSeen.begin(), isSeen.end(), true));
  }

 private:
  void countRuns() {
    std::size_t run = 0;
    for (std::size_t i = 0; i < m_size; ++i) {
      run = i > 0 && m_numbers[i] == m_numbers[i - 1] ? run + 1 : 1;
      m_distinct += run == 1;
      if (run > m_timesOfCommonest) {
        m_timesOfCommonest = run;
        m_commonest = m_numbers[i];
      }
    }
  }

  std::array<std::uint64_t, kSampleSize> m_numbers;
  std::size_t m_size;
  std::size_t m_distinct = 0;
  std::uint64_t m_commonest = 0;
  std::size_t m_timesOfCommonest = 0;
};

// The smallest power of ten that makes all of them whole, from `least` on.
std::optional<int> exponentFor(Numbers numbers, int least) {
  for (int exponent = least; exponent <= kMostDecimals; ++exponent) {
    if (std::all_of(numbers.begin(), numbers.end(), [=](std::uint64_t number) {
          return kernels::isExactScaled(number, exponent);
        })) {
      return exponent;
    }
  }
  return std::nullopt;
}

struct Scaling {
  int exponent;
  kernels::ScaledRange range;
};

// Fills `integers`. The sample may have missed the number with the most decimals, so its exponent is
// only the first to try.
std::optional<Scaling> scalingOf(Numbers numbers, Numbers sample, std::int64_t* integers) {
  std::optional<int> exponent = exponentFor(sample, 0);
  for (int i = 0; exponent && i < kMostExponentTries; ++i) {
    const kernels::ScaledRange range = kernels::scale(numbers, *exponent, integers);
    if (range.isExact) {
      return range.hasValues ? std::optional(Scaling{*exponent, range}) : std::nullopt;
    }
    const auto inexact = std::find_if_not(
        numbers.begin(), numbers.end(),
        [&](std::uint64_t number) { return kernels::isExactScaled(number, *exponent); });
    exponent = exponentFor(Numbers(inexact, 1), *exponent + 1);
  }
  return std::nullopt;
}

// With room for the code that means missing.
std::optional<kernels::CodeWidth> codeWidthOf(const kernels::ScaledRange& range) {
  return kernels::codeWidthFor(static_cast<std::uint64_t>(range.highest - range.lowest) +
                               range.hasMissing);
}

// What compression leaves of a thousand bytes of a plane that has one byte only, in the sample.
constexpr std::size_t kPerMilleLeft = 50;

}  // namespace

struct NumberLayoutEncoder::Choice {
  NumberLayout layout = NumberLayout::plain;
  std::size_t size = 0;  // expected
  std::optional<Scaling> scaling;
  int planes = 0;
  std::uint64_t common = 0;
  std::size_t othersCount = 0;

  void take(NumberLayout other, std::size_t otherSize) {
    if (otherSize < size) {
      layout = other;
      size = otherSize;
    }
  }
};

NumberLayoutEncoder::Choice NumberLayoutEncoder::choose(Numbers numbers) {
  const Sample sample(numbers);
  const std::size_t rows = numbers.size();
  Choice choice;
  choice.size = rows * sizeof(double);
  if (sample.distinct() <= sample.size() / 2 + 1 && fillDictionary(numbers)) {
    const int bits = kernels::bitsOfCodes(m_dictionary.size());
    choice.take(NumberLayout::dictionary, m_dictionary.size() * sizeof(double) +
                                              kernels::packedCodesSize(rows, bits));
    if (bits == 0) {
      return choice;
    }
  }
  m_integers.resize(rows);
  choice.scaling = scalingOf(numbers, sample.numbers(), m_integers.data());
  const auto width = choice.scaling ? codeWidthOf(choice.scaling->range) : std::nullopt;
  if (width) {
    choice.take(NumberLayout::scaled, kernels::codesSize(rows, *width));
  } else {
    choice.scaling.reset();
  }
  if (sample.timesOfCommonest() * 2 > sample.size()) {
    choice.common = sample.commonest();
    choice.othersCount = kernels::countOthers(numbers, choice.common);
    choice.take(NumberLayout::sparse,
                sizeof(double) + kernels::packedCodesSize(rows, 1) +
                    (width ? kernels::codesSize(choice.othersCount, *width)
                           : choice.othersCount * sizeof(double)));
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
  return choice;
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
  appendAs(choose(numbers), numbers, out);
}

void NumberLayoutEncoder::appendAs(const Choice& choice, Numbers numbers, ByteBuffer& out) {
  out.put(static_cast<std::uint8_t>(choice.layout));
  switch (choice.layout) {
    case NumberLayout::plain:
      out.append({reinterpret_cast<const unsigned char*>(numbers.data()), numbers.size_bytes()});
      return;
    case NumberLayout::scaled: {
      const kernels::ScaledRange& range = choice.scaling->range;
      const kernels::CodeWidth width = *codeWidthOf(range);
      out.put(static_cast<std::uint8_t>(choice.scaling->exponent));
      out.put(static_cast<std::uint8_t>(width.bits()));
      out.put(static_cast<std::uint8_t>(range.hasMissing));
      out.put(range.lowest);
      kernels::storeCodes({m_integers.data(), numbers.size()}, range.lowest, width,
                          out.append(kernels::codesSize(numbers.size(), width)));
      return;
    }
    case NumberLayout::dictionary: {
      const int bits = kernels::bitsOfCodes(m_dictionary.size());
      out.put(static_cast<std::uint8_t>(m_dictionary.size() - 1));
      out.append({reinterpret_cast<const unsigned char*>(m_dictionary.data()),
                  m_dictionary.size() * sizeof(std::uint64_t)});
      kernels::packCodes(m_codes, bits,
                         out.append(kernels::packedCodesSize(numbers.size(), bits)));
      return;
    }
    case NumberLayout::significance:
      out.put(static_cast<std::uint8_t>(choice.planes));
      kernels::split(numbers, choice.planes, out.append(numbers.size_bytes()));
      return;
    case NumberLayout::sparse:
      return appendSparse(choice, numbers, out);
  }
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
  kernels::packCodes(m_codes, 1, out.append(kernels::packedCodesSize(numbers.size(), 1)));
  Choice inner;
  inner.scaling = choice.scaling;
  if (inner.scaling) {
    inner.scaling->range =
        kernels::scale(m_others, inner.scaling->exponent, m_integers.data());
    inner.layout = inner.scaling->range.hasValues ? NumberLayout::scaled : NumberLayout::plain;
  }
  appendAs(inner, m_others, out);
}

}  // namespace kelvarin
