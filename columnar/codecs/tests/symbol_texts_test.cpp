#include "columnar/codecs/symbol_texts.h"

#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "columnar/codecs/text_encoding.h"

namespace kelvarin {

namespace {

using Texts = std::vector<std::optional<std::string>>;

// Nothing where texts are not stored as symbols.
std::string encoded(const Texts& texts, TrainedSymbols& trained) {
  std::vector<std::uint32_t> lengths;
  std::string bytes;
  for (const auto& text : texts) {
    lengths.push_back(text ? static_cast<std::uint32_t>(text->size()) : kNullLength);
    bytes += text.value_or("");
  }
  // A copy, so that a sanitizer sees what reads beyond.
  const std::vector<unsigned char> copy(bytes.begin(), bytes.end());
  SymbolTextEncoder encoder;
  const std::size_t size = encoder.fit({lengths, copy}, trained);
  if (size == 0) {
    return {};
  }
  ByteBuffer out;
  encoder.append(out);
  EXPECT_EQ(size, out.size());
  return std::string(asText(out.bytes()));
}

std::string encoded(const Texts& texts) {
  TrainedSymbols trained;
  return encoded(texts, trained);
}

// Nothing where the bytes are refused.
std::optional<Texts> decoded(const std::string& bytes, std::size_t rows) {
  const std::vector<unsigned char> copy(bytes.begin(), bytes.end());
  ByteReader reader(copy);
  DecodedTexts decoded;
  if (!decodeSymbolTexts(reader, rows, decoded)) {
    return std::nullopt;
  }
  EXPECT_EQ(decoded.offsets.size(), rows);
  Texts texts;
  for (std::size_t row = 0; row < rows; ++row) {
    const unsigned char* text = decoded.text(row);
    const auto length = loadPacked<std::uint32_t>(text);
    texts.push_back(length == kNullLength
                        ? std::nullopt
                        : std::optional(std::string(asText({text + kLengthSize, length}))));
  }
  return texts;
}

RowCounts rowCounts(const std::string& bytes, RowCounts known) {
  ByteReader reader(asBytes(bytes));
  return rowCountOfSymbolTexts(reader, known);
}

// Texts of words, numbers and other characters, of bytes of every kind, with nulls and empty ones.
Texts mixedTexts(std::size_t rows, unsigned seed) {
  std::mt19937 random(seed);
  const auto below = [&](unsigned limit) { return random() % limit; };
  std::vector<std::string> words{"the",
                                 "reader",
                                 "of",
                                 "ofthewriterwhoseverylongnamegoesonandon",
                                 "\xD1\x82\xD0\xB5\xD0\xBA\xD1\x81\xD1\x82",
                                 "2024",
                                 "m_name"};
  while (words.size() < 60) {
    words.emplace_back(1 + below(12), static_cast<char>('a' + below(26)));
  }
  const char* const between[] = {" ", " ", " ", "  ", ", ", "();", "::", "", "\t", "        "};
  Texts texts;
  for (std::size_t row = 0; row < rows; ++row) {
    std::string text;
    for (unsigned count = below(9); count > 0; --count) {
      text += words[std::min(below(60), below(60))];
      text += below(20) == 0 ? std::string(1, static_cast<char>(below(256))) : between[below(10)];
    }
    text += below(3) == 0 ? ".\"" : "";
    texts.push_back(below(15) == 0 ? std::nullopt : std::optional(text));
  }
  return texts;
}

const Texts kSentences{"the reader reads what the writer writes.",
                       std::nullopt,
                       "the writer writes what the reader reads.",
                       "",
                       "what?",
                       "the reader and the writer read, write and read."};

}  // namespace

TEST(SymbolTexts, EveryTextComesBack) {
  for (unsigned seed = 0; seed < 60; ++seed) {
    const Texts texts = mixedTexts(1 + seed * seed, seed);
    const std::string bytes = encoded(texts);
    if (!bytes.empty()) {
      EXPECT_EQ(decoded(bytes, texts.size()), texts) << seed;
      EXPECT_EQ(encoded(texts), bytes);
    }
  }
  EXPECT_EQ(decoded(encoded(kSentences), kSentences.size()), kSentences);
}

// No token comes again and no piece is frequent, so bytes are the symbols of all parts.
TEST(SymbolTexts, RandomLettersTakeWhatTheyHold) {
  constexpr double kBitsOfLetter = 4.7;
  std::mt19937 random(3);
  Texts texts{std::nullopt, ""};
  std::size_t letters = 0;
  while (letters < 1'000'000) {
    std::string text(1 + random() % 60, ' ');
    for (char& letter : text) {
      letter = static_cast<char>('a' + random() % 26);
    }
    letters += text.size();
    texts.push_back(text);
  }
  texts.emplace_back();
  const std::string bytes = encoded(texts);
  EXPECT_EQ(decoded(bytes, texts.size()), texts);
  const double bits = static_cast<double>(letters) * kBitsOfLetter;
  const double bitsOfEnds = static_cast<double>(texts.size()) * 6;
  EXPECT_LT(static_cast<double>(bytes.size()) * 8, 1.02 * bits + bitsOfEnds);
}

TEST(SymbolTexts, ManyTextsAreCutIntoParts) {
  Texts texts = mixedTexts(40'000, 7);
  texts.push_back(std::string(300'000, 'x') + "end");
  texts.push_back(std::nullopt);
  const std::string bytes = encoded(texts);
  EXPECT_EQ(decoded(bytes, texts.size()), texts);
  EXPECT_EQ(rowCounts(bytes, {1, 100'000}).min, texts.size());
  const std::string half = encoded(Texts(texts.begin(), texts.begin() + 20'000));
  EXPECT_FALSE(decoded(half + half.substr(4), texts.size()));  // sizes differ
  std::string two = encoded(kSentences) + encoded(kSentences).substr(4);
  storePacked(reinterpret_cast<unsigned char*>(two.data()),
              2 * loadPacked<std::uint32_t>(reinterpret_cast<unsigned char*>(two.data())));
  Texts twice = kSentences;
  twice.insert(twice.end(), kSentences.begin(), kSentences.end());
  EXPECT_EQ(decoded(two, twice.size()), twice);
}

TEST(SymbolTexts, TextsOfEveryByteAndNoLetters) {
  Texts texts;
  for (int byte = 0; byte < 256; ++byte) {
    texts.push_back(std::string(static_cast<std::size_t>(1 + byte % 40), static_cast<char>(byte)));
  }
  EXPECT_EQ(decoded(encoded(texts), texts.size()), texts);
  texts.assign(300, std::nullopt);
  texts.push_back("");
  EXPECT_EQ(decoded(encoded(texts), texts.size()), texts);
}

TEST(SymbolTexts, ASingleSymbolIsNotStored) {
  EXPECT_EQ(encoded(Texts(100, "")), "");
  EXPECT_EQ(encoded(Texts(100, std::nullopt)), "");
  EXPECT_EQ(encoded(Texts(100, "!")), "");
}

TEST(SymbolTexts, WordsTakeFewBits) {
  // Eight of 64 words, in any order, hold 48 bits.
  std::mt19937 random(3);
  const auto letter = [&] { return static_cast<char>('a' + random() % 8); };
  Texts texts;
  for (int row = 0; row < 5000; ++row) {
    std::string text = "begin";
    for (int word = 0; word < 8; ++word) {
      text += " word";
      text += letter();
      text += letter();
    }
    texts.push_back(text);
  }
  EXPECT_LT(encoded(texts).size(), 5000 * 59 / 8);
}

// Each block has words of its own, more in all than are kept, beside those of all blocks.
TEST(SymbolTexts, BlocksTakeTheSymbolsOfThoseBefore) {
  std::mt19937 random(5);
  const auto word = [&](unsigned seed) {
    std::mt19937 ofSeed(seed);
    std::string letters(4 + ofSeed() % 6, ' ');
    for (char& letter : letters) {
      letter = static_cast<char>('a' + ofSeed() % 26);
    }
    return letters;
  };
  TrainedSymbols trained;
  std::size_t anew = 0;
  std::size_t trainedBefore = 0;
  for (unsigned block = 0; block < 40; ++block) {
    Texts texts{std::nullopt, ""};
    for (int row = 0; row < 600; ++row) {
      texts.push_back(word(random() % 300) + "_" + word(random() % 300) + ".set" +
                      std::string(1, static_cast<char>('A' + random() % 26)) + "(" +
                      word(1000 * block + 1000 + random() % 500) + ", " + word(random()) + ")");
    }
    const std::string bytes = encoded(texts, trained);
    EXPECT_EQ(decoded(bytes, texts.size()), texts) << block;
    trainedBefore += bytes.size();
    anew += encoded(texts).size();
  }
  EXPECT_LT(trainedBefore * 100, anew * 103);
}

// The parts of names come back more often than the names do.
TEST(SymbolTexts, NamesAreCutIntoWords) {
  const char* const words[] = {"reader", "writer", "column", "block", "number", "symbol"};
  const auto sizeWith = [&](bool isCapital, const char* between) {
    std::mt19937 random(9);
    Texts texts;
    for (int row = 0; row < 3000; ++row) {
      std::string name;
      for (int i = 0; i < 6; ++i) {
        std::string part = words[random() % 6];
        part[0] = static_cast<char>(isCapital ? part[0] - 32 : part[0]);
        name += part + between;
      }
      texts.push_back(name);
    }
    return encoded(texts).size();
  };
  EXPECT_LT(sizeWith(true, "") * 100, sizeWith(false, " ") * 105);
  EXPECT_LT(sizeWith(false, "_") * 100, sizeWith(false, " ") * 105);
}

TEST(SymbolTexts, RowCounts) {
  const std::string bytes = encoded(kSentences);
  EXPECT_EQ(rowCounts(bytes, {1, 10}).min, 6u);
  EXPECT_EQ(rowCounts(bytes, {1, 10}).max, 6u);
  EXPECT_TRUE(rowCounts(bytes, {1, 5}).isEmpty());
  EXPECT_TRUE(rowCounts(bytes.substr(0, 40), {1, 10}).isEmpty());
  EXPECT_FALSE(decoded(bytes, 5));
  EXPECT_FALSE(decoded(bytes, 7));
}

TEST(SymbolTexts, DamageIsRefusedOrChangesTextsOnly) {
  const std::string whole = encoded(kSentences);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(decoded(whole.substr(0, size), kSentences.size())) << size;
  }
  EXPECT_FALSE(decoded(whole + 'x', kSentences.size()));
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (int bit = 0; bit < 8; ++bit) {
      std::string damaged = whole;
      damaged[i] = static_cast<char>(damaged[i] ^ 1 << bit);
      if (const auto texts = decoded(damaged, kSentences.size())) {
        EXPECT_EQ(rowCounts(damaged, {1, 10}).min, kSentences.size());
      }
    }
  }
}

TEST(SymbolTexts, ForgedTextsAreRefused) {
  // The example of docs/gel-format.md: "so,", "so,", ".".
  const auto example = [](std::string table, unsigned char size, unsigned char count) {
    const std::string zeros(22, '\0');
    return std::string{static_cast<char>(size), 0, 0, 0, static_cast<char>(count), 0, 0, 0} +
           table + std::string("\1\0\x11\1\0\1\0\1\0\1\0\1\1\1\1\x73\0", 17) + zeros + "\2\2" +
           std::string(31, '\0') + std::string("\x20\0\x20\1\0\1\0\1\0\1\0\0\2\1\3", 15) +
           std::string("\4\0\x33\x22\2\1\0\1\0\1\0\1\0\x7A\x10\x1B\5", 17);
  };
  const std::string table("\0\4\0\1\0", 5);
  const Texts texts{"so,", "so,", "."};
  EXPECT_EQ(decoded(example(table, 7, 10), 3), texts);
  EXPECT_EQ(encoded(texts), example(table, 7, 10));
  EXPECT_FALSE(decoded(example(table, 6, 10), 3));                           // another size
  EXPECT_FALSE(decoded(example(table, 7, 9), 3));                            // a symbol is left
  EXPECT_FALSE(decoded(example(table, 7, 11), 3));                           // or missing
  EXPECT_FALSE(decoded(example(std::string("\0\5\0\0\0", 5), 7, 10), 3));    // none ends a text
  EXPECT_FALSE(decoded(example(std::string("\0\3\0\1\0", 5), 7, 10), 3));    // one too few
  EXPECT_FALSE(decoded(example(std::string("\2\4\0\1\0", 5), 7, 10), 3));    // unknown flag
  EXPECT_FALSE(decoded(example(std::string("\0\0\0\0\0", 5), 7, 10), 3));    // no symbols
  EXPECT_FALSE(decoded(example(std::string("\0\0\x10\1\0", 5), 7, 10), 3));  // too many
}

TEST(SymbolTexts, ClaimedSizesAreCheckedBeforeMemoryIsTaken) {
  std::string bytes = encoded(kSentences);
  storePacked(reinterpret_cast<unsigned char*>(bytes.data()), std::uint32_t{0xF0000000});
  const std::vector<unsigned char> copy(bytes.begin(), bytes.end());
  ByteReader reader(copy);
  DecodedTexts texts;
  EXPECT_FALSE(decodeSymbolTexts(reader, kSentences.size(), texts));
  EXPECT_EQ(texts.bytes.data(), nullptr);
}

}  // namespace kelvarin
