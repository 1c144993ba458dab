#include <cmath>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "columnar/codecs/chunk_codec.h"
#include "columnar/codecs/hex_parsing.h"
#include "columnar/codecs/shaped_text_encoder.h"
#include "columnar/codecs/shaped_texts.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/codecs/text_sample.h"

namespace kelvarin {

namespace {

using Random = std::mt19937_64;

std::uint64_t below(Random& random, std::uint64_t limit) {
  return random() % limit;
}

std::string digits(std::uint64_t number, int width) {
  std::string text = std::to_string(number);
  return text.size() < static_cast<std::size_t>(width)
             ? std::string(static_cast<std::size_t>(width) - text.size(), '0') + text
             : text;
}

std::string hex(Random& random, int width, bool isUpper) {
  std::string text;
  for (int i = 0; i < width; ++i) {
    text += (isUpper ? "0123456789ABCDEF" : "0123456789abcdef")[below(random, 16)];
  }
  return text;
}

std::string word(Random& random, std::size_t maxLength) {
  static const std::string kLetters[] = {"a", "e", "i", "s", "t", "n", "K", "é", "ß", "日", "🙂"};
  std::string text;
  for (std::size_t i = 1 + below(random, maxLength); i > 0; --i) {
    text += kLetters[below(random, random() % 20 == 0 ? 11 : 7)];
  }
  return text;
}

std::string bytes(Random& random, std::size_t length) {
  std::string text(length, '\0');
  for (char& character : text) {
    character = static_cast<char>(random());
  }
  return text;
}

// Days beyond the end of their month, and February 29 in all years, are among them.
std::string date(Random& random, const char* separator, std::uint64_t days = 28) {
  return digits(1890 + below(random, 200), 4) + separator + digits(1 + below(random, 12), 2) +
         separator + digits(1 + below(random, days), 2);
}

std::string timeOfDay(Random& random, std::uint64_t hours = 24) {
  return digits(below(random, hours), 2) + ":" + digits(below(random, 60), 2) + ":" +
         digits(below(random, 60), 2);
}

std::string number(Random& random) {
  return std::to_string(random() >> below(random, 64));
}

using Shape = std::function<std::string(Random&)>;

const std::vector<Shape> kShapes = {
    [](Random& r) { return date(r, "-"); },
    [](Random& r) { return date(r, "-", 31); },
    [](Random& r) { return date(r, "/", 33); },
    [](Random& r) { return date(r, ""); },
    [](Random& r) { return date(r, ".") + " " + timeOfDay(r); },
    [](Random& r) { return date(r, "-") + "T" + timeOfDay(r, 25) + "Z"; },
    [](Random& r) { return date(r, "") + digits(below(r, 24), 2) + digits(below(r, 60), 2); },
    [](Random& r) { return date(r, "-") + " " + timeOfDay(r) + "." + digits(below(r, 1000), 3); },
    [](Random& r) { return timeOfDay(r) + "," + digits(below(r, 1'000'000'000), 9); },
    [](Random& r) { return timeOfDay(r).substr(0, 5); },
    [](Random& r) {
      return digits(1 + below(r, 31), 2) + "." + digits(1 + below(r, 12), 2) + "." + number(r);
    },
    [](Random& r) {
      return digits(1 + below(r, 29), 2) + "/" + digits(1 + below(r, 12), 2) + "/" +
             digits(below(r, 10000), 4);
    },
    number,
    [](Random& r) { return digits(below(r, 1'000'000), 6); },
    [](Random& r) { return digits(below(r, 1'000'000), 1 + static_cast<int>(below(r, 8))); },
    [](Random& r) { return "-" + number(r); },
    [](Random& r) {
      return (below(r, 2) ? "-" : "+") + number(r) + "." + digits(below(r, 100), 2);
    },
    [](Random& r) { return number(r) + "." + number(r); },
    [](Random& r) { return number(r) + "," + digits(below(r, 1000), 3); },
    [](Random& r) { return number(r) + number(r) + number(r); },
    [](Random& r) { return digits(r(), 20) + digits(r(), 20); },
    [](Random& r) { return "0" + number(r); },
    [](Random& r) { return hex(r, 32, false); },
    [](Random& r) { return hex(r, 7, below(r, 2) == 0); },
    [](Random& r) {
      return hex(r, 8, false) + "-" + hex(r, 4, false) + "-4" + hex(r, 3, false) + "-" +
             "89ab"[below(r, 4)] + hex(r, 3, false) + "-" + hex(r, 12, false);
    },
    [](Random& r) { return "{" + hex(r, 8, true) + "-" + hex(r, 4, below(r, 9) == 0) + "}"; },
    [](Random& r) { return "0x" + hex(r, 1 + static_cast<int>(below(r, 17)), true); },
    [](Random& r) {
      return std::to_string(below(r, 256)) + "." + std::to_string(below(r, 256)) + "." +
             std::to_string(below(r, 300));
    },
    [](Random& r) { return "Customer " + number(r); },
    [](Random& r) { return "Kunde#" + digits(below(r, 100000), 9); },
    [](Random& r) { return word(r, 3) + std::to_string(below(r, 1000)); },
    [](Random& r) { return word(r, 12) + " " + word(r, 12); },
    [](Random& r) { return word(r, 9) + "." + word(r, 9) + "@example.com"; },
    [](Random& r) {
      return "{\"id\": " + number(r) + ", \"name\": \"" + word(r, 6) + "\", \"at\": \"" +
             date(r, "-") + "\"}";
    },
    [](Random& r) {
      return "ftp://example.com/" + word(r, 5) + "/" + word(r, 9) + "?q=" + number(r);
    },
    [](Random& r) { return std::string(below(r, 40), '-') + number(r); },
    [](Random& r) { return bytes(r, below(r, 12)); },
    [](Random& r) { return std::string(below(r, 300) == 0 ? below(r, 100'000) : 3, 'x'); },
    [](Random& r) { return std::string(1, "abc"[below(r, 3)]) + std::string(below(r, 2), 'b'); },
    [](Random& r) { return below(r, 2) == 0 ? "" : std::string(300, '7') + number(r); },
};

struct TextColumn {
  std::vector<std::uint32_t> lengths;
  std::string bytes;

  void add(const std::string& text) {
    lengths.push_back(static_cast<std::uint32_t>(text.size()));
    bytes += text;
  }
  void addNull() { lengths.push_back(kNullLength); }
  std::uint32_t rows() const { return static_cast<std::uint32_t>(lengths.size()); }
  TextValues values() const { return {lengths, asBytes(bytes)}; }
};

// Texts of one shape or of a few, some that miss it, nulls and empty texts.
TextColumn randomColumn(Random& random) {
  const std::size_t rows = 1 + below(random, std::uint64_t{1} << below(random, 13));
  const std::size_t shapes = below(random, 3) == 0 ? 1 + below(random, 4) : 1;
  const std::size_t first = below(random, kShapes.size());
  const std::uint64_t misses = below(random, 2) == 0 ? 0 : 2 + below(random, 100);
  const std::uint64_t repeats = below(random, 3) == 0 ? 1 + below(random, 600) : 0;
  TextColumn column;
  std::vector<std::string> seen;
  for (std::size_t row = 0; row < rows; ++row) {
    std::string text = kShapes[(first + below(random, shapes) * 7) % kShapes.size()](random);
    if (misses > 0 && below(random, misses) == 0) {
      switch (below(random, 4)) {
        case 0:
          column.addNull();
          continue;
        case 1:
          text.clear();
          break;
        case 2:
          text.insert(below(random, text.size() + 1), 1, static_cast<char>(random()));
          break;
        default:
          text.erase(0, 1);
      }
    }
    if (seen.size() < repeats) {
      seen.push_back(text);
    } else if (repeats > 0) {
      text = seen[below(random, repeats)];
    }
    column.add(text);
  }
  return column;
}

ByteBuffer chunkOf(const TextColumn& column) {
  ByteBuffer chunk;
  ChunkEncoder().appendTexts(column.values(), chunk);
  return chunk;
}

ByteBuffer rawOf(const ByteBuffer& chunk) {
  ByteBuffer raw;
  EXPECT_EQ(uncompressSnappy(chunk.bytes(kChunkChecksumSize), kMaxRawSize, raw), ReadStatus::ok);
  return raw;
}

bool hasTexts(const DecodedTexts& decoded, const TextColumn& column) {
  const unsigned char* expected = asBytes(column.bytes).data();
  for (std::size_t row = 0; row < column.lengths.size(); ++row) {
    const unsigned char* text = decoded.text(decoded.offsets.size() == 1 ? 0 : row);
    const std::size_t size = byteCountOf(column.lengths[row]);
    if (loadPacked<std::uint32_t>(text) != column.lengths[row] ||
        std::memcmp(text + sizeof(std::uint32_t), expected, size) != 0 ||
        (!decoded.codes.empty() &&
         decoded.entries.at(decoded.codes.at(row)) != decoded.offsets[row])) {
      return false;
    }
    expected += size;
  }
  return true;
}

std::string_view textOf(const unsigned char* text) {
  const auto length = loadPacked<std::uint32_t>(text);
  return length == kNullLength ? "(null)"
                               : std::string_view(reinterpret_cast<const char*>(text) + 4, length);
}

// A text to compare with: one of the column, changed or not.
std::string nearText(Random& random, const DecodedTexts& decoded) {
  std::string text(textOf(decoded.text(below(random, decoded.offsets.size()))));
  switch (below(random, 6)) {
    case 0:
      return text.substr(0, below(random, text.size() + 1));
    case 1:
      return text + static_cast<char>(random());
    case 2:
      text.insert(below(random, text.size() + 1), 1, static_cast<char>('0' + below(random, 12)));
      return text;
    case 3:
      if (!text.empty()) {
        text[below(random, text.size())] = static_cast<char>('/' + below(random, 60));
      }
      return text;
    default:
      return text;
  }
}

// Whether texts that are kept as their fields are made as they are without, whichever rows are
// asked for.
bool areMade(const ShapedTexts& kept, const DecodedTexts& decoded, const ShapedTexts::Rows& rows) {
  ByteBuffer bytes;
  const std::uint64_t size = kept.sizeOf(rows);
  bytes.resize(size + ShapedTexts::kMargin);
  std::vector<std::uint32_t> positions(decoded.offsets.size());
  kept.make(rows, bytes.data(), positions.data());
  std::uint64_t made = 0;
  for (std::size_t i = 0; i < rows.count; ++i) {
    const unsigned char* text = bytes.data() + positions[rows.offset(i)];
    const unsigned char* expected = decoded.text(rows.first + rows.offset(i));
    const std::size_t all = 4 + byteCountOf(loadPacked<std::uint32_t>(expected));
    made += all;
    if (std::memcmp(text, expected, all) != 0) {
      return false;
    }
  }
  return made == size;
}

bool areComparedLike(const ShapedTexts& kept, const DecodedTexts& decoded,
                     const ShapedTexts::Rows& rows, const std::string& other) {
  std::vector<std::int8_t> orders(rows.count);
  std::vector<std::int8_t> differences(rows.count);
  constexpr std::int8_t kOfNull = 7;
  kept.compare(other, false, kOfNull, rows, orders.data());
  kept.compare(other, true, kOfNull, rows, differences.data());
  for (std::size_t i = 0; i < rows.count; ++i) {
    const unsigned char* text = decoded.text(rows.first + rows.offset(i));
    const bool isNull = loadPacked<std::uint32_t>(text) == kNullLength;
    const int order = textOf(text).compare(other);
    const int expected = isNull ? kOfNull : (order > 0) - (order < 0);
    if (orders[i] != expected || (differences[i] != 0) != (expected != 0)) {
      return false;
    }
  }
  return true;
}

std::size_t roundTrips() {
  const char* wanted = std::getenv("SHAPED_TEXT_CHUNKS");
  return wanted == nullptr ? 400 : std::strtoul(wanted, nullptr, 10);
}

// The size of 5000 of these texts in a block, in bits a text.
double bitsOf(const Shape& shape) {
  Random random(3);
  TextColumn column;
  for (int i = 0; i < 5000; ++i) {
    column.add(shape(random));
  }
  return static_cast<double>(chunkOf(column).size()) * 8 / 5000;
}

}  // namespace

TEST(ShapedTexts, TextsOfFortyShapesComeBack) {
  ASSERT_EQ(kShapes.size(), 40u);
  ChunkDecoder decoder;
  std::size_t shaped = 0;
  for (std::size_t seed = 0; seed < roundTrips(); ++seed) {
    Random random(seed);
    const TextColumn column = randomColumn(random);
    const ByteBuffer chunk = chunkOf(column);
    DecodedTexts decoded;
    ASSERT_EQ(decoder.decodeTexts(chunk.bytes(), column.rows(), decoded), ReadStatus::ok)
        << "seed " << seed;
    ASSERT_TRUE(hasTexts(decoded, column)) << "seed " << seed;
    const RowCounts counts =
        decoder.possibleRowCounts(chunk.bytes(), GelType::text, {1, kMaxRowsInBlock});
    ASSERT_TRUE(counts.min <= column.rows() && column.rows() <= counts.max) << "seed " << seed;
    shaped += rawOf(chunk).data()[0] == static_cast<int>(TextEncoding::shaped);
  }
  EXPECT_GT(shaped, roundTrips() / 5);
}

TEST(ShapedTexts, WhatIsKeptAsFieldsIsMadeAndComparedAsTheTextsAre) {
  ChunkDecoder decoder;
  std::size_t kept = 0;
  for (std::size_t seed = 0; seed < roundTrips(); ++seed) {
    Random random(seed);
    const TextColumn column = randomColumn(random);
    const ByteBuffer chunk = chunkOf(column);
    const std::uint32_t rows = column.rows();
    DecodedTexts decoded;
    DecodedTexts late;
    ASSERT_EQ(decoder.decodeTexts(chunk.bytes(), rows, decoded), ReadStatus::ok);
    ASSERT_EQ(decoder.decodeTexts(chunk.bytes(), rows, late, TextForm::late), ReadStatus::ok);
    if (late.shaped == nullptr) {
      ASSERT_EQ(late.offsets, decoded.offsets) << "seed " << seed;
      continue;
    }
    ++kept;
    const std::size_t first = below(random, rows);
    std::vector<std::uint32_t> selection;
    for (std::uint32_t row = 0; row < rows - first; ++row) {
      if (below(random, 3) == 0) {
        selection.push_back(row);
      }
    }
    const ShapedTexts::Rows some{first, selection.data(), selection.size()};
    const ShapedTexts::Rows all{0, nullptr, rows};
    ASSERT_TRUE(areMade(*late.shaped, decoded, all)) << "seed " << seed;
    ASSERT_TRUE(areMade(*late.shaped, decoded, some)) << "seed " << seed;
    for (int i = 0; i < 12; ++i) {
      const std::string other = nearText(random, decoded);
      ASSERT_TRUE(areComparedLike(*late.shaped, decoded, all, other)) << seed << ": " << other;
      ASSERT_TRUE(areComparedLike(*late.shaped, decoded, some, other)) << seed << ": " << other;
    }
  }
  EXPECT_GT(kept, roundTrips() / 10);
}

TEST(ShapedTexts, FieldsTakeNoMoreThanTheyHold) {
  const auto logarithm = [](double choices) { return std::log2(choices); };
  const double kSlack = 1.06;
  EXPECT_LT(bitsOf([](Random& r) {
              return digits(1990 + below(r, 30), 4) + "-" + digits(1 + below(r, 12), 2) + "-" +
                     digits(1 + below(r, 28), 2);
            }),
            logarithm(30 * 366) * kSlack);
  EXPECT_LT(bitsOf([](Random& r) { return "2024-02-29 " + timeOfDay(r); }),
            logarithm(86400) * kSlack);
  EXPECT_LT(bitsOf([](Random& r) {
              return std::to_string(below(r, 4000)) + "." + digits(below(r, 100), 2);
            }),
            logarithm(400'000) * kSlack);
  EXPECT_LT(bitsOf(kShapes[24]), 122 * kSlack) << "the version of a UUID is fixed";
  EXPECT_LT(bitsOf([](Random& r) {
              const std::uint64_t size = below(r, 1000);
              return "file_" + std::to_string(size * size) + ".txt";
            }),
            logarithm(1000) * 1.45)
      << "texts that are often in a block are a dictionary";
  // Half of the texts have a minus sign: a bit for each.
  EXPECT_LT(
      bitsOf([](Random& r) { return (below(r, 2) ? "-" : "") + std::to_string(below(r, 4096)); }),
      13 * kSlack);
}

TEST(ShapedTexts, RisingNumbersAreStoredAsDifferences) {
  TextColumn column;
  for (int i = 0; i < 5000; ++i) {
    column.add("INV-" + digits(static_cast<std::uint64_t>(i) + 998'000, 8) + "/" +
               digits(static_cast<std::uint64_t>(i) * 86400 / 5000 / 3600, 2));
  }
  EXPECT_LT(chunkOf(column).size(), 400u);
}

TEST(ShapedTexts, ForgedBytesAreRefusedOrMakeOtherTexts) {
  ChunkDecoder decoder;
  for (std::size_t seed = 0; seed < 60; ++seed) {
    Random random(seed);
    TextColumn column;
    for (int row = 0; row < 70; ++row) {
      column.add(kShapes[(seed + below(random, 9) / 8) % kShapes.size()](random).substr(0, 90));
    }
    const ByteBuffer raw = rawOf(chunkOf(column));
    const std::vector<unsigned char> sound(raw.data(), raw.data() + raw.size());
    const auto decodesAs = [&](const std::vector<unsigned char>& forged, TextForm form) {
      DecodedTexts decoded;
      int unknown = -1;
      return decodeTexts(forged, column.rows(), form, decoded, unknown) == ReadStatus::ok;
    };
    const auto decodes = [&](const std::vector<unsigned char>& forged) {
      const bool isSound = decodesAs(forged, TextForm::made);
      EXPECT_EQ(decodesAs(forged, TextForm::late), isSound) << "seed " << seed;
      return isSound;
    };
    ASSERT_TRUE(decodes(sound));
    for (std::size_t i = 0; i < sound.size(); ++i) {
      std::vector<unsigned char> forged = sound;
      forged[i] = static_cast<unsigned char>(forged[i] ^ (1u << below(random, 8)));
      (void)decodes(forged);
      forged.resize(i);
      EXPECT_FALSE(decodes(forged)) << "seed " << seed << ", cut at " << i;
    }
  }
}

TEST(MomentPattern, EveryDayAndNothingElse) {
  MomentPattern pattern;
  ASSERT_TRUE(pattern.compile(std::string("\2.\1.\0", 5)));
  ASSERT_EQ(pattern.largest(), 3652424u) << "10,000 years";
  unsigned char text[MomentPattern::kMaxSize + 1];
  for (std::uint64_t day = 0; day <= pattern.largest(); ++day) {
    std::uint64_t parsed = 0;
    pattern.print(day, text);
    ASSERT_TRUE(pattern.parse(text, parsed) && parsed == day) << day;
  }
  for (const char* invalid :
       {"29.02.1900", "31.04.2024", "00.01.2024", "01.13.2024", "1a.01.2024"}) {
    std::uint64_t parsed = 0;
    EXPECT_FALSE(pattern.parse(asBytes(invalid).data(), parsed)) << invalid;
  }
  for (const char* broken :
       {"\1\2", "\3", "\4\5", "\3\4\6", "\3\4\5\6\6\6\6\6\6\6\6", "\3\4\5\6.\6"}) {
    EXPECT_FALSE(pattern.compile(broken));
  }
}

__m128i sixteenOf(const unsigned char* bytes) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

TEST(DigitPrinting, EveryWidth) {
  unsigned char text[32] = {};
  for (int width = 1; width <= kMaxDecimalDigits; ++width) {
    for (const std::uint64_t number :
         {powerOfTen(width) - 1, powerOfTen(width - 1), powerOfTen(width) / 7}) {
      printDigits(number, width, text);
      EXPECT_EQ(asText({text, static_cast<std::size_t>(width)}), digits(number, width));
      EXPECT_EQ(digitCount(number), static_cast<int>(std::to_string(number).size()));
    }
  }
  EXPECT_EQ(digitCount(0), 1);
  for (int width = 1; width <= kMaxHexDigits; ++width) {
    std::uint64_t parsed = 0;
    const std::uint64_t number = 0xFEDCBA9876543210 >> (4 * (kMaxHexDigits - width));
    printHex(number, width, kUpperLetterOffset, text);
    EXPECT_EQ(asText({text, static_cast<std::size_t>(width)}),
              std::string("FEDCBA9876543210").substr(0, static_cast<std::size_t>(width)));
    EXPECT_TRUE(parseUpToSixteenHex(sixteenOf(text), width, 'A', parsed) && parsed == number);
  }
}

TEST(DigitParsing, NoOtherCharacterIsADigit) {
  for (int width = 1; width <= 8; ++width) {
    for (int position = 0; position < width; ++position) {
      for (int character = 0; character < 256; ++character) {
        std::string text = "12345678";
        text[static_cast<std::size_t>(position)] = static_cast<char>(character);
        const auto eight = loadPacked<std::uint64_t>(asBytes(text).data());
        const std::string known = text.substr(0, static_cast<std::size_t>(width));
        std::uint64_t parsed = 0;
        const auto isIn = [&](const char* characters) {
          return known.find_first_not_of(characters) == std::string::npos;
        };
        ASSERT_EQ(parseUpToEightDigits(eight, width, parsed), isIn("0123456789")) << text;
        ASSERT_TRUE(!isIn("0123456789") || parsed == std::stoull(known)) << text;
        const __m128i sixteen = sixteenOf(asBytes(text + text).data());
        ASSERT_EQ(parseUpToSixteenHex(sixteen, width, 'a', parsed), isIn("0123456789abcdef"))
            << text;
        ASSERT_TRUE(!isIn("0123456789abcdef") || parsed == std::stoull(known, nullptr, 16)) << text;
        ASSERT_EQ(parseUpToSixteenHex(sixteen, width, 'A', parsed), isIn("0123456789ABCDEF"))
            << text;
      }
    }
  }
}

}  // namespace kelvarin
