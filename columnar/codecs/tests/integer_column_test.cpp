#include "columnar/codecs/integer_column.h"

#include <algorithm>
#include <functional>
#include <random>

#include <gtest/gtest.h>

namespace kelvarin {

namespace {

using Numbers = std::vector<std::uint64_t>;

constexpr std::uint64_t kAll = ~std::uint64_t{0};

Numbers made(std::size_t count, const std::function<std::uint64_t(std::uint64_t)>& make) {
  Numbers numbers(count);
  for (std::size_t i = 0; i < count; ++i) {
    numbers[i] = make(i);
  }
  return numbers;
}

bool decode(Bytes bytes, std::size_t count, std::uint64_t largest, Numbers& numbers) {
  ByteReader reader(bytes);
  IntegerColumn column;
  if (!column.take(reader, count, largest) || reader.remaining() != 0) {
    return false;
  }
  numbers.resize(count);
  for (std::uint64_t& number : numbers) {
    if (!column.hasNext()) {
      return false;
    }
    number = column.number();
  }
  return true;
}

// The layout that was chosen; `maxBytes` is what the numbers may take.
IntegerLayout layoutAfterRoundTrip(const Numbers& numbers, std::size_t maxBytes) {
  ByteBuffer encoded;
  IntegerColumnEncoder().append(numbers, encoded);
  EXPECT_LE(encoded.size(), maxBytes);
  Numbers decoded;
  const std::uint64_t largest = *std::max_element(numbers.begin(), numbers.end());
  EXPECT_TRUE(decode(encoded.bytes(), numbers.size(), largest, decoded));
  EXPECT_EQ(decoded, numbers);
  if (largest > 0) {
    EXPECT_FALSE(decode(encoded.bytes(), numbers.size(), largest - 1, decoded));
  }
  return static_cast<IntegerLayout>(encoded.data()[0]);
}

}  // namespace

TEST(IntegerColumn, TheSmallestLayoutIsTaken) {
  std::mt19937_64 random(1);
  const auto below = [&](std::uint64_t limit) { return random() % limit; };
  EXPECT_EQ(layoutAfterRoundTrip(made(5000, [](auto) { return 1u << 20; }), 5),
            IntegerLayout::constant);
  EXPECT_EQ(layoutAfterRoundTrip(made(5000, [&](auto) { return 700'000 + below(4096); }), 7510),
            IntegerLayout::frameOfReference);
  EXPECT_EQ(layoutAfterRoundTrip(
                made(5000, [&](auto i) { return kAll - 40'000 + i * 8 + below(2); }), 1300),
            IntegerLayout::delta);
  EXPECT_EQ(
      layoutAfterRoundTrip(made(5000, [&](auto) { return below(64) * below(2) * 99'991; }), 3000),
      IntegerLayout::dictionary);
  const Numbers skewed = made(5000, [&](auto) { return below(10) == 0 ? below(16) : 3; });
  EXPECT_EQ(layoutAfterRoundTrip(skewed, 890), IntegerLayout::frameOfReference)
      << "9 of 10 numbers have Huffman codes of a bit";
}

// What earlier blocks have shown costs little where the numbers change.
TEST(IntegerColumn, BlocksAfterEvenNumbers) {
  std::mt19937_64 random(4);
  IntegerColumnEncoder encoder;
  IntegerHistory history;
  const auto sizeOf = [&](const Numbers& numbers) {
    ByteBuffer encoded;
    encoder.append(numbers, history, encoded);
    Numbers decoded;
    EXPECT_TRUE(decode(encoded.bytes(), numbers.size(), kAll, decoded));
    EXPECT_EQ(decoded, numbers);
    return encoded.size();
  };
  const auto even = [&](auto) { return random() % 4096; };
  for (int block = 0; block < 30; ++block) {
    EXPECT_LE(sizeOf(made(5000, even)), 7510u);
  }
  EXPECT_LE(sizeOf(made(5000, [&](auto i) { return i / 2 + random() % 2; })), 1300u) << "ascending";
  EXPECT_LE(sizeOf(made(5000, [&](auto) { return random() % 70'000; })), 10'700u) << "wider";
  for (int block = 0; block < 30; ++block) {
    sizeOf(made(5000, even));
  }
  const auto skewed = [&](auto) { return random() % 10 == 0 ? random() % 4096 : 3; };
  std::size_t size = 0;
  for (int block = 0; block < 32; ++block) {
    size += sizeOf(made(5000, skewed));
  }
  EXPECT_LE(size, 16 * 7510u + 16 * 2300u) << "only some blocks go on as before";
}

TEST(IntegerColumn, EveryWidthAndEveryCount) {
  std::mt19937_64 random(2);
  for (int bits = 0; bits <= 64; ++bits) {
    for (const std::size_t count : {1, 2, 15, 17, 511, 512, 513, 1030}) {
      const std::uint64_t mask = bits == 64 ? kAll : (std::uint64_t{1} << bits) - 1;
      const std::size_t maxBytes = 24 + (count * static_cast<std::size_t>(bits) + 7) / 8;
      layoutAfterRoundTrip(made(count, [&](auto) { return random() & mask; }), maxBytes);
      Numbers rising = made(count, [&](auto) { return random() & mask; });
      std::sort(rising.begin(), rising.end());
      layoutAfterRoundTrip(rising, maxBytes);
    }
  }
}

TEST(IntegerColumn, DamageIsRefused) {
  std::mt19937_64 random(3);
  const std::vector<Numbers> columns = {
      made(600, [&](auto) { return random() % 1000; }),
      made(600, [&](auto i) { return i * 5 + random() % 3; }),
      made(600, [&](auto) { return random() % 3 * random() % 8 * 7919; }),
      made(600, [&](auto) { return random() % 9 == 0 ? random() % 70 : 1; })};
  for (const Numbers& numbers : columns) {
    ByteBuffer encoded;
    IntegerColumnEncoder().append(numbers, encoded);
    Numbers decoded;
    for (std::size_t size = 0; size < encoded.size(); ++size) {
      EXPECT_FALSE(decode(encoded.bytes().first(size), numbers.size(), kAll, decoded));
      std::vector<unsigned char> forged(encoded.data(), encoded.data() + encoded.size());
      forged[size] ^= static_cast<unsigned char>(1u << random() % 8);
      (void)decode(forged, numbers.size(), kAll, decoded);
    }
    EXPECT_FALSE(decode(encoded.bytes(), numbers.size() + 200, kAll, decoded));
  }
}

}  // namespace kelvarin
