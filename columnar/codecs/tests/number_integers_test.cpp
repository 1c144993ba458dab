#include "columnar/codecs/number_integers.h"

#include <bit>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/null_number.h"
#include "columnar/codecs/number_encoding.h"
#include "columnar/codecs/row_counts.h"

namespace kelvarin {

namespace {

using Numbers = std::vector<std::uint64_t>;
constexpr int kIntegers = static_cast<int>(NumberEncoding::integers);

std::uint64_t bits(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

bool decode(Bytes encoded, std::size_t rows, Numbers& numbers) {
  ByteBuffer decoded;
  int unknownEncoding = -1;
  if (decodeNumbers(encoded, static_cast<std::uint32_t>(rows), decoded, unknownEncoding) !=
      ReadStatus::ok) {
    return false;
  }
  repeatToSize(rows, decoded);
  numbers.resize(rows);
  std::memcpy(numbers.data(), decoded.data(), decoded.size());
  return true;
}

// The encoded numbers, which restore every bit.
ByteBuffer encoded(const Numbers& numbers) {
  ByteBuffer bytes;
  NumberEncoder().append(numbers, bytes);
  Numbers restored;
  EXPECT_TRUE(decode(bytes.bytes(), numbers.size(), restored));
  EXPECT_EQ(restored, numbers);
  const auto rows = static_cast<std::uint32_t>(numbers.size());
  const RowCounts counts = possibleRowCounts(bytes.bytes(), GelType::number, {1, 400'000'000});
  EXPECT_TRUE(counts.min <= rows && rows <= counts.max);
  return bytes;
}

Numbers made(std::size_t rows, const std::function<double()>& make) {
  Numbers numbers(rows);
  std::generate(numbers.begin(), numbers.end(), [&] { return bits(make()); });
  return numbers;
}

}  // namespace

TEST(NumberIntegers, EachKindOfColumnTakesLittleMoreThanItsInformation) {
  std::mt19937_64 random(1);
  const auto below = [&](std::uint64_t limit) { return static_cast<double>(random() % limit); };
  double sum = 0;
  struct Kind {
    const char* name;
    std::function<double()> make;
    double bits;  // at most
  };
  const std::vector<Kind> kinds = {
      {"products", [&] { return (50 + below(50'000)) / 100 * (1 + below(20)); }, 21.5},
      {"sums of tenths", [&] { return sum += below(100) / 10; }, 13},
      {"a few that are no decimals",
       [&] { return below(200) == 0 ? -below(99'999) / 300 : -below(99'999) / 100; }, 18},
      {"few that are missing", [&] { return below(90) == 0 ? kNullNumber : below(1 << 26); }, 27},
      {"27 bits", [&] { return below(1 << 27); }, 27.1},
      {"50 bits", [&] { return below(std::uint64_t{1} << 50) - 0x1p49; }, 50.1},
      {"days in milliseconds", [&] { return 86'400'000 * (19'000 + below(2000)); }, 11.1},
      {"converted", [&] { return (below(4096) - 100) * 5 / 4096; }, 12.2},
      {"float", [&] { return static_cast<double>(static_cast<float>(1 + below(1 << 30) / 3e9)); },
       23.2},
      {"few different", [&] { return std::sqrt(500 + below(500)); }, 16},
      {"nanoseconds", [&] { return 1.7e18 + 256 * below(100'000); }, 17.1},
  };
  constexpr std::size_t kRows = 5000;
  for (const Kind& kind : kinds) {
    const ByteBuffer bytes = encoded(made(kRows, kind.make));
    EXPECT_EQ(bytes.data()[0], kIntegers) << kind.name;
    EXPECT_LE(static_cast<double>(bytes.size() * 8) / kRows, kind.bits) << kind.name;
  }
}

TEST(NumberIntegers, EveryMixtureKeepsEveryBit) {
  std::mt19937_64 random(2);
  const auto below = [&](std::uint64_t limit) { return random() % limit; };
  const std::uint64_t special[] = {kNullNumberBits, kNotANumberBits,  bits(-0.0),
                                   bits(5e-324),    bits(-kInfinity), bits(0x1p53),
                                   bits(-0x1p53),   bits(0x1p1023),   0xFFF0000000000001ull};
  int integers = 0;
  for (int column = 0; column < 3000; ++column) {
    const double divisor = std::pow(below(2) == 0 ? 10.0 : 2.0, static_cast<double>(below(16)));
    const std::uint64_t range = std::uint64_t{1} << below(54);
    const double factor = below(3) == 0 ? static_cast<double>(1 + below(99)) : 1.0;
    const std::uint64_t rareness = std::uint64_t{1} << below(12);
    const std::uint64_t ulps = 1 + below(3) * below(3) * below(1000);
    const bool isSum = below(4) == 0;
    const bool isFloat = below(6) == 0;
    double sum = 0;
    Numbers numbers(1 + below(1500));
    for (std::uint64_t& number : numbers) {
      const auto integer = static_cast<double>(below(range)) - static_cast<double>(range / 3);
      const double value = integer * factor / divisor;
      sum += value;
      const double chosen = isSum ? sum : value;
      number = bits(isFloat ? static_cast<double>(static_cast<float>(chosen)) : chosen);
      number += below(ulps);
      number = below(rareness) == 1 ? special[below(std::size(special))] : number;
    }
    integers += encoded(numbers).data()[0] == kIntegers;
  }
  EXPECT_GT(integers, 500);
}

TEST(NumberIntegers, RowsWithoutBytesOfTheirOwnAreBounded) {
  double row = 0;
  const ByteBuffer bytes = encoded(made(100'000, [&] { return row += 7; }));
  EXPECT_EQ(bytes.data()[0], kIntegers);
  EXPECT_LT(bytes.size(), 30u);
  // Many more rows would claim memory that nobody has.
  std::string forged(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  constexpr std::uint32_t kRows = 400'000'000;
  std::memcpy(forged.data() + 1, &kRows, sizeof kRows);
  Numbers numbers;
  EXPECT_FALSE(decode(asBytes(forged), kRows, numbers));
  row = 0;
  encoded(made(5'000'000, [&] { return row += 7; }));
}

// Typed by hand: 0.1 + 0.2, 0.5 and a missing number, as tenths in steps of two.
TEST(NumberIntegers, BytesAreWhatTheyWereAndOthersAreRefused) {
  const std::vector<unsigned char> bytes = {
      6,                    //
      3, 0,          0, 0,  // numbers
      0, 1,                 // over 10^1
      2,                    // bits of a mark
      0, 0b00110010,        // marks: a unit of least precision more, none, another number
      6, 2,                 // from 3 on, in steps of 2
      1, 0,          1, 2,  // 0 steps and 1 step, in codes of a bit
      1, 0,          0, 1, 0, 0, 0, 0, 0, 0, 0, 0};
  Numbers numbers;
  ASSERT_TRUE(decode(bytes, 3, numbers));
  EXPECT_EQ(numbers, (Numbers{bits(0.1 + 0.2), bits(0.5), kNullNumberBits}));
  EXPECT_FALSE(decode(bytes, 2, numbers));
  struct Change {
    std::size_t position;
    unsigned char value;
  };
  const std::vector<Change> changes = {{1, 4},            // numbers
                                       {5, 3},            // kind
                                       {6, 16},           // digits
                                       {7, 3},            // bits of a mark
                                       {9, 0b01110010},   // a mark behind the last row
                                       {9, 0b00000010},   // no other number, but one is there
                                       {11, 0},           // no step
                                       {16, kIntegers}};  // others in this encoding
  for (const Change& change : changes) {
    std::vector<unsigned char> changed = bytes;
    changed[change.position] = change.value;
    EXPECT_FALSE(decode(changed, 3, numbers)) << change.position;
  }
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(decode(Bytes(bytes).first(size), 3, numbers)) << size;
  }
  // Integers beyond 2^53 are no doubles: the first one, and one that a step leads to.
  const std::vector<unsigned char> first = {6,    2,    0,    0,    0,    0, 0, 0, 0x82, 0x80, 0x80,
                                            0x80, 0x80, 0x80, 0x80, 0x20, 1, 1, 0, 1,    2};
  EXPECT_FALSE(decode(first, 2, numbers));
  std::vector<unsigned char> last = first;
  last[8] = 0x80;
  EXPECT_FALSE(decode(last, 2, numbers));
  std::fill(last.begin() + 8, last.begin() + 15, 0xFF);
  last[15] = 0x1F;
  ASSERT_TRUE(decode(last, 2, numbers));
  EXPECT_EQ(numbers, (Numbers{bits(-0x1p53), bits(1 - 0x1p53)}));
}

}  // namespace kelvarin
