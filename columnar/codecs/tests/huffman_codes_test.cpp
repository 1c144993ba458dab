#include "columnar/codecs/huffman_codes.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace kelvarin {

namespace {

using Symbols = std::vector<std::uint16_t>;

HuffmanEncoder fitted(const Symbols& symbols) {
  std::vector<std::uint32_t> counts(kMaxHuffmanSymbols);
  for (const std::uint16_t symbol : symbols) {
    ++counts[symbol];
  }
  HuffmanEncoder encoder;
  encoder.fit(counts);
  return encoder;
}

std::string encoded(const Symbols& symbols) {
  HuffmanEncoder encoder = fitted(symbols);
  ByteBuffer out;
  encoder.append(symbols, out);
  EXPECT_LE(encoder.encodedSize(), out.size());
  EXPECT_GE(encoder.encodedSize() + 3, out.size());
  return std::string(asText(out.bytes()));
}

// Nothing where the bytes are refused. They are copied, so that a sanitizer sees what reads beyond.
std::optional<Symbols> decoded(const std::string& bytes, std::size_t count,
                               std::size_t batch = 512) {
  const std::vector<unsigned char> copy(bytes.begin(), bytes.end());
  ByteReader reader(copy);
  HuffmanDecoder decoder;
  if (!decoder.take(reader, count)) {
    return std::nullopt;
  }
  EXPECT_LE(decoder.alphabetSize(), kMaxHuffmanSymbols);
  Symbols symbols(count);
  for (std::size_t first = 0; first < count; first += batch) {
    const std::size_t size = std::min(batch, count - first);
    if (!decoder.next(std::span(symbols).subspan(first, size))) {
      return std::nullopt;
    }
  }
  EXPECT_EQ(reader.remaining(), 0u);
  return symbols;
}

// Symbols whose frequencies fall by the given factor.
Symbols skewed(std::size_t count, std::size_t alphabet, double factor, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<double> weights(alphabet);
  for (std::size_t i = 0; i < alphabet; ++i) {
    weights[(i * 2654435761u) % alphabet] += std::pow(factor, double(i));
  }
  std::discrete_distribution<int> distribution(weights.begin(), weights.end());
  Symbols symbols(count);
  for (auto& symbol : symbols) {
    symbol = static_cast<std::uint16_t>(distribution(random));
  }
  return symbols;
}

std::string hex(const std::string& bytes) {
  std::string text;
  for (const unsigned char byte : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02X ", byte);
    text += digits;
  }
  return text;
}

}  // namespace

TEST(HuffmanCodes, EverySymbolComesBack) {
  unsigned seed = 0;
  for (const std::size_t alphabet : {1, 2, 3, 17, 256, 1000, 4096}) {
    for (const double factor : {1.0, 0.99, 0.5}) {
      for (const std::size_t count : {1, 2, 3, 4, 5, 15, 16, 17, 333, 5000, 100'001}) {
        const Symbols symbols = skewed(count, alphabet, factor, ++seed);
        const std::string bytes = encoded(symbols);
        EXPECT_EQ(decoded(bytes, count), symbols) << alphabet << ' ' << factor << ' ' << count;
        EXPECT_EQ(decoded(bytes, count, 20), symbols);
      }
    }
  }
}

TEST(HuffmanCodes, SizesComeNearTheEntropy) {
  const Symbols symbols = skewed(100'000, 300, 0.97, 1);
  std::vector<double> counts(300);
  for (const std::uint16_t symbol : symbols) {
    ++counts[symbol];
  }
  double bits = 0;
  for (const double count : counts) {
    bits += count == 0 ? 0 : count * std::log2(double(symbols.size()) / count);
  }
  EXPECT_LT(double(encoded(symbols).size()), bits / 8 * 1.02 + 160);
}

TEST(HuffmanCodes, RareSymbolsGetNoLongerCodesThanATableHolds) {
  // Frequencies like the Fibonacci numbers make the longest codes.
  std::vector<std::uint32_t> counts{1, 1};
  while (counts.size() < 40) {
    counts.push_back(counts.back() + counts[counts.size() - 2]);
  }
  HuffmanEncoder encoder;
  encoder.fit(counts);
  double shares = 0;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    EXPECT_LE(encoder.length(i), 12);
    shares += std::pow(0.5, encoder.length(i));
  }
  EXPECT_EQ(shares, 1);
}

TEST(HuffmanCodes, Layout) {
  // 2 has the code 0, 0 the code 10, 1 and 3 the codes 110 and 111.
  EXPECT_EQ(hex(encoded({2, 2, 0, 2, 2, 1, 3, 0})),
            "03 00 32 31 01 00 01 00 01 00 01 00 00 06 1D 02 ");
  EXPECT_EQ(hex(encoded({7, 7, 7})), "07 80 ");
}

TEST(HuffmanCodes, DamageIsRefusedOrChangesSymbolsOnly) {
  const Symbols symbols = skewed(333, 40, 0.9, 5);
  const std::string whole = encoded(symbols);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(decoded(whole.substr(0, size), symbols.size())) << size;
  }
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (int bit = 0; bit < 8; ++bit) {
      std::string damaged = whole;
      damaged[i] = static_cast<char>(damaged[i] ^ 1 << bit);
      const std::vector<unsigned char> copy(damaged.begin(), damaged.end());
      ByteReader reader(copy);
      HuffmanDecoder decoder;
      Symbols out(symbols.size());
      if (decoder.take(reader, out.size()) && decoder.next(out)) {
        EXPECT_TRUE(std::all_of(out.begin(), out.end(), [&](std::uint16_t symbol) {
          return symbol < decoder.alphabetSize();
        }));
      }
    }
  }
}

TEST(HuffmanCodes, ForgedLengthsAreRefused) {
  const std::string streams("\1\0\1\0\1\0\1\0\0\0\0\0", 12);
  const auto isTaken = [&](const std::string& head) {
    return decoded(head + streams, 4).has_value();
  };
  EXPECT_TRUE(isTaken(std::string("\1\0\x11", 3)));
  EXPECT_FALSE(isTaken(std::string("\1\0\x21", 3)));     // a code is missing
  EXPECT_FALSE(isTaken(std::string("\2\0\x11\1", 4)));   // a code too many
  EXPECT_FALSE(isTaken(std::string("\1\0\0", 3)));       // no code
  EXPECT_FALSE(isTaken(std::string("\2\0\x11\xF", 4)));  // longer than any code
  EXPECT_FALSE(decoded(std::string("\0\x10", 2), 4));    // 4097 symbols
  EXPECT_FALSE(decoded(std::string("\xFF\xFF", 2), 4));
  EXPECT_FALSE(decoded(std::string("\1\0\x11", 3) + streams, 40));  // more symbols than bits
}

}  // namespace kelvarin
