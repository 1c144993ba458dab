#include "columnar/codecs/number_scale_search.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numeric>

#include "base/null_number.h"
#include "columnar/codecs/integer_column.h"
#include "columnar/codecs/number_kernels.h"

namespace kelvarin {

namespace {

constexpr std::size_t kMaxPairs = 64;
constexpr int kNumberBits = 64;
constexpr int kMantissaBits = 52;
// Decimals with more digits are rarely decimals at all.
constexpr int kMaxDecimals = 10;

using Values = std::array<std::uint64_t, kMaxPairs>;

// Numbers from all over the block, each with the one after it.
struct Pairs {
  std::size_t count = 0;
  Values first;
  Values second;

  explicit Pairs(std::span<const std::uint64_t> numbers)
      : count(std::min(numbers.size() - 1, kMaxPairs)) {
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t index = i * (numbers.size() - 1) / count;
      first[i] = numbers[index];
      second[i] = numbers[index + 1];
    }
  }
  std::span<const std::uint64_t> firsts() const { return {first.data(), count}; }
  std::span<const std::uint64_t> seconds() const { return {second.data(), count}; }
};

// The bits of an ideal code for what the values have above their `shift` lowest bits.
double entropyAbove(int shift, std::span<std::uint64_t> values) {
  for (std::uint64_t& value : values) {
    value >>= shift;
  }
  std::sort(values.begin(), values.end());
  double bits = 0;
  for (auto same = values.begin(); same != values.end();) {
    const auto next = std::upper_bound(same, values.end(), *same);
    const double share = static_cast<double>(next - same) / static_cast<double>(values.size());
    bits -= share * std::log2(share);
    same = next;
  }
  return bits;
}

// The integers of a sample, and what becomes of the rest.
class Trial {
 public:
  static constexpr std::uint64_t kMaxCorrection = 254;

  Trial(const Pairs& pairs, const NumberScale& scale) : m_scale(scale) {
    Values second;
    Values corrections;
    Values correctionsOfSecond;
    kernels::takeIntegers(pairs.firsts(), scale, m_integers.data(), corrections.data());
    kernels::takeIntegers(pairs.seconds(), scale, second.data(), correctionsOfSecond.data());
    for (std::size_t i = 0; i < pairs.count; ++i) {
      if (corrections[i] > kMaxCorrection) {
        ++(pairs.first[i] == kNullNumberBits ? m_missing : m_others);
        continue;
      }
      m_corrected += corrections[i] > 0;
      m_largestCorrection = std::max(m_largestCorrection, corrections[i]);
      if (correctionsOfSecond[i] <= kMaxCorrection) {
        const auto difference = static_cast<std::int64_t>(second[i] - m_integers[i]);
        m_bitsOfDifferences += std::bit_width(kernels::zigzagEncoded(difference));
        ++m_differences;
      }
      m_integers[m_count++] = m_integers[i];
    }
  }

  double bitsPerNumber(double dictionaryBits) {
    const std::size_t rows = m_count + m_missing + m_others;
    const auto share = [&](std::size_t count) {
      return static_cast<double>(count) / static_cast<double>(rows);
    };
    return share(m_count) * std::min(integerBits(), dictionaryBits) +
           share(m_others) * kNumberBits + markBits(share(m_corrected + m_missing + m_others));
  }
  // All numbers are exact, so that further decimals cost more only.
  bool isExact() const { return m_others == 0 && m_corrected == 0; }

 private:
  double integerBits() {
    if (m_count == 0) {
      return 0;
    }
    const double differences =
        m_differences == 0
            ? kNumberBits
            : static_cast<double>(m_bitsOfDifferences) / static_cast<double>(m_differences) + 1;
    return std::min(differences, rangeBits());
  }

  // Most bits of doubles are those of the mantissa, and the signs and exponents are few.
  double rangeBits() {
    constexpr int kUpperBits = 4;
    const std::span integers(m_integers.data(), m_count);
    if (m_scale.kind == NumberScale::Kind::bits) {
      const int low = kMantissaBits - m_scale.exponent;
      return low > 0 ? low + entropyAbove(low, integers) : kNumberBits;
    }
    const auto [lowestAt, highestAt] = std::minmax_element(integers.begin(), integers.end());
    const std::uint64_t base = *lowestAt;
    const std::uint64_t highest = *highestAt;
    std::uint64_t step = 0;
    for (std::uint64_t& integer : integers) {
      integer -= base;
      step = step == 1 ? 1 : std::gcd(step, integer);
    }
    step = std::max<std::uint64_t>(step, 1);
    for (std::uint64_t& integer : integers) {
      integer /= step;
    }
    const auto width = static_cast<int>(std::bit_width((highest - base) / step));
    const int low = std::max(0, width - kUpperBits);
    const double skewed = low + entropyAbove(low, integers);
    return PackedNumbersEncoder::isWorthHuffmanCodes(skewed, width) ? skewed : width;
  }

  double markBits(double share) const {
    if (share == 0) {
      return 0;
    }
    const double widest = m_largestCorrection == 0    ? 1
                          : m_largestCorrection <= 2  ? 2
                          : m_largestCorrection <= 14 ? 4
                                                      : 8;
    return std::min(widest, 4 * share);
  }

  NumberScale m_scale;
  Values m_integers;
  std::size_t m_count = 0;  // integers that stand for their number
  std::size_t m_missing = 0;
  std::size_t m_others = 0;
  std::size_t m_corrected = 0;
  std::uint64_t m_largestCorrection = 0;
  std::size_t m_differences = 0;
  int m_bitsOfDifferences = 0;
};

// What indices of few different numbers take, judged by how often the sample has one of them twice.
double bitsOfDictionary(std::size_t rows, const NumberSample& sample) {
  constexpr double kBitsOfEntry = 64;
  const auto size = static_cast<double>(sample.size());
  const std::size_t repeated = sample.size() - sample.distinct();
  if (repeated < 2) {
    return kNumberBits;
  }
  const double different = size * size / (2 * static_cast<double>(repeated));
  if (different > static_cast<double>(rows) / 4) {
    return kNumberBits;
  }
  return std::log2(different) + different * kBitsOfEntry / static_cast<double>(rows);
}

class Search {
 public:
  Search(std::span<const std::uint64_t> numbers, const NumberSample& sample)
      : m_pairs(numbers), m_dictionaryBits(bitsOfDictionary(numbers.size(), sample)) {}

  // Returns whether all of the sample is exact.
  bool consider(NumberScale scale) {
    Trial trial(m_pairs, scale);
    const double bits = trial.bitsPerNumber(m_dictionaryBits);
    if (bits < m_best.bits) {
      m_best = {scale, bits};
    }
    return trial.isExact();
  }

  void considerDecimals() {
    for (int exponent = 0; exponent <= kMaxDecimals; ++exponent) {
      const NumberScale scale{NumberScale::Kind::decimal, exponent};
      if (doesFitSome(scale) && consider(scale)) {
        return;
      }
    }
  }

  void considerBinary() {
    int lowest = 0;  // the exponent of the last bit that is set in any mantissa
    int trailing = kNumberBits;
    for (const std::uint64_t number : m_pairs.firsts()) {
      if (number == kNullNumberBits || number << 1 == 0) {
        continue;
      }
      constexpr int kExponentOfLastBit = 1023 + kMantissaBits;
      const int zeros = std::countr_zero(number);
      const int exponent = static_cast<int>(number >> kMantissaBits & 0x7FF) - kExponentOfLastBit;
      lowest = std::min(lowest, exponent + std::min(zeros, kMantissaBits));
      trailing = std::min(trailing, zeros);
    }
    consider({NumberScale::Kind::bits, std::min(trailing, kMantissaBits)});
    const NumberScale binary{NumberScale::Kind::binary, -lowest};
    if (binary.exponent > 0 && binary.isSound()) {
      consider(binary);
    }
  }

  ScaleGuess best() const { return m_best; }

 private:
  // Whether integers stand for half of the first few numbers, or these are missing.
  bool doesFitSome(const NumberScale& scale) const {
    constexpr std::size_t kFew = 16;
    const auto few = m_pairs.firsts().first(std::min(m_pairs.count, kFew));
    std::array<std::uint64_t, kFew> integers;
    std::array<std::uint64_t, kFew> corrections;
    kernels::takeIntegers(few, scale, integers.data(), corrections.data());
    std::size_t others = 0;
    for (std::size_t i = 0; i < few.size(); ++i) {
      others += corrections[i] > Trial::kMaxCorrection && few[i] != kNullNumberBits;
    }
    return others * 2 <= few.size();
  }

  Pairs m_pairs;
  double m_dictionaryBits;
  ScaleGuess m_best{{}, HUGE_VAL};
};

}  // namespace

ScaleGuess findScale(std::span<const std::uint64_t> numbers, const NumberSample& sample,
                     std::optional<int> decimals) {
  Search search(numbers, sample);
  if (decimals) {
    search.consider({NumberScale::Kind::decimal, *decimals});
    return search.best();
  }
  search.considerDecimals();
  search.considerBinary();
  return search.best();
}

}  // namespace kelvarin
