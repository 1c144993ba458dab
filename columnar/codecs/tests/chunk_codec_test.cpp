#include "columnar/codecs/chunk_codec.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "base/null_number.h"
#include "columnar/codecs/snappy_stream.h"
#include "columnar/format/checksum.h"

namespace kelvarin {

namespace {

using Numbers = std::vector<std::uint64_t>;
using Keys = std::vector<std::uint32_t>;
using Texts = std::vector<const char*>;  // nullptr: the null text

constexpr std::size_t kRowCounts[] = {1, 2, 7, 127, 128, 129, 2048, 5000};

std::uint64_t bits(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

Numbers made(std::size_t rows, const std::function<std::uint64_t()>& make) {
  Numbers numbers(rows);
  std::generate(numbers.begin(), numbers.end(), make);
  return numbers;
}

// Repeats the value where a single one stands for all rows.
template <typename Value>
std::vector<Value> ofEachRow(const ByteBuffer& decoded, std::size_t rows) {
  std::vector<Value> values(decoded.size() / sizeof(Value));
  std::memcpy(values.data(), decoded.data(), decoded.size());
  return values.size() == 1 ? std::vector<Value>(rows, values[0]) : values;
}

// The row count is among those that the chunk can have.
void expectRowCount(const ByteBuffer& chunk, GelType type, std::size_t rows) {
  const RowCounts counts =
      ChunkDecoder().possibleRowCounts(chunk.bytes(), type, {1, kMaxRowsInBlock});
  EXPECT_LE(counts.min, rows) << static_cast<char>(type);
  EXPECT_GE(counts.max, rows) << static_cast<char>(type);
}

// The content of the chunk before compression, after a round trip without loss.
std::string rawAfterRoundTrip(const Numbers& numbers) {
  ByteBuffer chunk;
  ChunkEncoder().appendNumbers(numbers, chunk);
  ByteBuffer decoded;
  EXPECT_EQ(ChunkDecoder().decodeNumbers(chunk.bytes(), static_cast<std::uint32_t>(numbers.size()),
                                         decoded),
            ReadStatus::ok);
  EXPECT_EQ(ofEachRow<std::uint64_t>(decoded, numbers.size()), numbers);
  expectRowCount(chunk, GelType::number, numbers.size());
  ByteBuffer raw;
  EXPECT_EQ(uncompressSnappy(chunk.bytes(kChunkChecksumSize), kMaxRawSize, raw), ReadStatus::ok);
  return {reinterpret_cast<const char*>(raw.data()), raw.size()};
}

// The encoding that was chosen.
NumberEncoding encodingAfterRoundTrip(const Numbers& numbers) {
  return static_cast<NumberEncoding>(rawAfterRoundTrip(numbers)[0]);
}

struct TextColumn {
  std::vector<std::uint32_t> lengths;
  std::string bytes;

  void add(const char* text) {
    lengths.push_back(text == nullptr ? kNullLength : static_cast<std::uint32_t>(strlen(text)));
    bytes += text == nullptr ? "" : text;
  }
  TextValues values() const { return {lengths, asBytes(bytes)}; }
};

TextEncoding encodingAfterRoundTrip(const TextColumn& column, const ByteBuffer& chunk) {
  DecodedTexts decoded;
  const auto rows = static_cast<std::uint32_t>(column.lengths.size());
  EXPECT_EQ(ChunkDecoder().decodeTexts(chunk.bytes(), rows, decoded), ReadStatus::ok);
  std::size_t offset = 0;
  for (std::size_t row = 0; row < rows; ++row) {
    const std::uint32_t length = column.lengths[row];
    const unsigned char* text = decoded.text(decoded.offsets.size() == 1 ? 0 : row);
    EXPECT_EQ(loadPacked<std::uint32_t>(text), length);
    EXPECT_EQ(std::memcmp(text + 4, column.bytes.data() + offset, byteCountOf(length)), 0);
    if (!decoded.codes.empty()) {
      EXPECT_EQ(decoded.entries.at(decoded.codes.at(row)), decoded.offsets[row]);
    }
    offset += byteCountOf(length);
  }
  ByteBuffer raw;
  EXPECT_EQ(uncompressSnappy(chunk.bytes(kChunkChecksumSize), kMaxRawSize, raw), ReadStatus::ok);
  expectRowCount(chunk, GelType::text, rows);
  return static_cast<TextEncoding>(raw.data()[0]);
}

TextEncoding encodingAfterRoundTrip(const TextColumn& column) {
  ByteBuffer chunk;
  ChunkEncoder().appendTexts(column.values(), chunk);
  return encodingAfterRoundTrip(column, chunk);
}

void expectRoundTrip(const Keys& keys, StorageCode code) {
  ByteBuffer chunk;
  ChunkEncoder().appendKeys(keys, code, chunk);
  ByteBuffer decoded;
  ASSERT_EQ(ChunkDecoder().decodeKeys(chunk.bytes(), code, static_cast<std::uint32_t>(keys.size()),
                                      decoded),
            ReadStatus::ok);
  ASSERT_EQ(decoded.size(), keys.size() * 4);
  EXPECT_EQ(std::memcmp(decoded.data(), keys.data(), decoded.size()), 0)
      << keys.size() << " keys, code " << static_cast<int>(code);
  expectRowCount(chunk, GelType::key, keys.size());
}

}  // namespace

TEST(NumberEncodings, EachKindOfColumnGetsItsOwnAndKeepsEveryBit) {
  std::mt19937_64 random(1);
  const auto below = [&](std::uint64_t limit) { return random() % limit; };
  for (const std::size_t rows : {std::size_t{300}, std::size_t{5000}}) {
    EXPECT_EQ(encodingAfterRoundTrip(made(rows, [&] { return random() | 1; })),
              NumberEncoding::plain);
    EXPECT_EQ(encodingAfterRoundTrip(made(rows, [&] { return bits(double(below(99999)) / 100); })),
              NumberEncoding::frameOfReference);
    EXPECT_EQ(
        encodingAfterRoundTrip(made(rows, [&] { return bits(std::sqrt(double(below(200)))); })),
        NumberEncoding::dictionary);
    const auto fraction = [&] { return static_cast<double>(random()) * 0x1p-64; };
    EXPECT_EQ(
        encodingAfterRoundTrip(made(rows, [&] { return bits(5 + 25 * fraction() * fraction()); })),
        NumberEncoding::byteStreamSplit);
    EXPECT_EQ(
        encodingAfterRoundTrip(made(rows, [&] { return below(10) == 0 ? random() : bits(0); })),
        NumberEncoding::sparse);
    double time = 0;
    EXPECT_EQ(encodingAfterRoundTrip(
                  made(rows, [&] { return bits((time += double(below(9)) - 2) / 10); })),
              NumberEncoding::integers);
  }
}

TEST(NumberEncodings, ReservedPatternsSurviveAmongOrdinaryNumbers) {
  std::mt19937_64 random(2);
  const std::uint64_t special[] = {
      kNullNumberBits, kNotANumberBits,          0x7FF0000000000001ull,    bits(-0.0),
      bits(0.0),       bits(kInfinity),          bits(-kInfinity),         bits(5e-324),
      bits(1.7e308),   bits(1125899906842624.0), bits(-1125899906842623.0)};
  for (const std::size_t rows : kRowCounts) {
    for (const std::uint64_t pattern : special) {
      for (const double scale : {1.0, 10.0, 1e8}) {
        Numbers numbers = made(rows, [&] { return bits(double(random() % 70000) / scale); });
        numbers[random() % rows] = pattern;
        encodingAfterRoundTrip(numbers);
        // Where the sample does not look.
        numbers.assign(rows, bits(7 / scale));
        numbers[rows / 2 + rows / 200] = pattern;
        encodingAfterRoundTrip(numbers);
      }
    }
  }
}

TEST(NumberEncodings, FramesOfReferenceTakeTheBitsTheyNeed) {
  constexpr std::size_t kRows = 3000;
  constexpr std::size_t kHead = 12;  // encoding, exponent, bits, flag, base
  std::mt19937_64 random(10);
  for (const int width : {3, 7, 8, 9, 15, 16, 17, 24, 32}) {
    const std::uint64_t max = (std::uint64_t{1} << width) - 1;
    // A missing number has the code with all bits set, so one more bit where the range needs it.
    for (const int missing : {0, 1}) {
      const std::uint64_t largest = max - static_cast<std::uint64_t>(missing);
      Numbers numbers = made(kRows, [&] { return bits(double(random() % largest)); });
      numbers[1] = bits(double(largest));
      numbers[2] = missing != 0 ? kNullNumberBits : bits(0);
      numbers[3] = bits(0);
      const std::string raw = rawAfterRoundTrip(numbers);
      EXPECT_EQ(raw.substr(0, 4), std::string({1, 0, char(width), char(missing)}));
      EXPECT_EQ(raw.size(), kHead + kRows * static_cast<std::size_t>(width) / 8) << width;
    }
  }
}

// Typed by hand, since this encoder does not choose these forms.
TEST(NumberEncodings, CodesOfZeroBits) {
  const auto decoded = [](std::vector<unsigned char> raw, std::uint32_t rows) {
    ByteBuffer numbers;
    int unknownEncoding = -1;
    EXPECT_EQ(decodeNumbers(raw, rows, numbers, unknownEncoding), ReadStatus::ok);
    return ofEachRow<std::uint64_t>(numbers, rows);
  };
  const Numbers same(3, bits(2.5));
  const Numbers missing(3, kNullNumberBits);
  EXPECT_EQ(decoded({1, 1, 0, 0, 25, 0, 0, 0, 0, 0, 0, 0}, 3), same);
  EXPECT_EQ(decoded({1, 1, 0, 1, 25, 0, 0, 0, 0, 0, 0, 0}, 3), missing);
  EXPECT_EQ(decoded({5, 1, 0, 0, 25, 0, 0, 0, 0, 0, 0, 0}, 3), same);
  EXPECT_EQ(decoded({5, 1, 0, 1, 25, 0, 0, 0, 0, 0, 0, 0}, 3), missing);
  EXPECT_EQ(decoded({2, 0, 0, 1, 1, 0, 0, 25, 0, 0, 0, 0, 0, 0, 0}, 3), same);
  // Sparse without other numbers, and with others only.
  EXPECT_EQ(decoded({4, 0, 0, 0, 0, 0, 0, 4, 64, 0, 0}, 3), same);
  EXPECT_EQ(decoded({4, 0, 0, 0, 0, 0, 0, 0, 0, 7, 1, 1, 0, 0, 25, 0, 0, 0, 0, 0, 0, 0}, 3), same);
}

TEST(TextEncodings, NullAndEmptyTextsStayDistinct) {
  const Texts words = {"", nullptr, "Zürich", "a", "🙂", nullptr, ""};
  for (const std::size_t rows : kRowCounts) {
    TextColumn column;
    for (std::size_t i = 0; i < rows; ++i) {
      column.add(words[i * i % words.size()]);
    }
    encodingAfterRoundTrip(column);
  }
  for (const char* only : {"", "x", static_cast<const char*>(nullptr)}) {
    TextColumn column;
    for (int i = 0; i < 300; ++i) {
      column.add(only);
    }
    EXPECT_EQ(encodingAfterRoundTrip(column), TextEncoding::dictionary);
  }
}

TEST(TextEncodings, LengthsOfEveryWidthAndDictionariesOfBothCodes) {
  std::mt19937_64 random(5);
  for (const std::size_t length :
       {std::size_t{0}, std::size_t{15}, std::size_t{16}, std::size_t{254}, std::size_t{255},
        std::size_t{65534}, std::size_t{65535}}) {
    TextColumn column;
    for (int i = 0; i < 40; ++i) {
      column.add((std::to_string(random()) + std::string(length, 'x')).substr(0, length).c_str());
    }
    column.add(nullptr);
    encodingAfterRoundTrip(column);
  }
  // Words of letters only, since others have a shape.
  const auto word = [](std::uint64_t number) {
    std::string letters;
    for (; number > 0; number /= 26) {
      letters += static_cast<char>('a' + number % 26);
    }
    return letters;
  };
  for (const std::uint64_t distinct : {256u, 257u, 1000u}) {
    TextColumn column;
    for (int i = 0; i < 20000; ++i) {
      column.add(word(random() % distinct * 7919).c_str());
    }
    EXPECT_NE(encodingAfterRoundTrip(column), TextEncoding::plain);
  }
  TextColumn different;
  for (std::uint64_t i = 0; i < 70000; ++i) {
    different.add(word(i * 7919).c_str());
  }
  encodingAfterRoundTrip(different);
}

TEST(TextEncodings, DictionariesShareTheBeginningsOfNeighbours) {
  const std::string beginning(300, 'b');
  const std::string ends[] = {"", "x", "xy", std::string("x\0y", 3), std::string(1, '\0')};
  std::mt19937_64 random(9);
  TextColumn column;
  for (int i = 0; i < 5000; ++i) {
    if (random() % 10 == 0) {
      column.add(nullptr);
      continue;
    }
    // Most beginnings are longer than what an entry may share with the previous one.
    const std::string text = beginning.substr(0, random() % 8 * 40) + ends[random() % 5];
    column.lengths.push_back(static_cast<std::uint32_t>(text.size()));
    column.bytes += text;
  }
  encodingAfterRoundTrip(column);
  ByteBuffer chunk;
  ChunkEncoder().appendTexts(column.values(), chunk);
  EXPECT_LT(chunk.size(), 5500u) << "41 different texts need codes of 6 bits and little more";
}

TEST(TextEncodings, EntriesOfDictionariesAreWholeAtEveryLength) {
  std::mt19937_64 random(13);
  TextColumn column;
  for (int i = 0; i < 5000; ++i) {
    // Neighbours in the order of the texts share from none to all bytes of the previous one.
    const std::uint64_t kind = random() % 300;
    const std::string text = std::string(kind % 38, 'a') + std::to_string(kind * kind);
    column.add(text.substr(0, kind % 40).c_str());
  }
  EXPECT_EQ(encodingAfterRoundTrip(column), TextEncoding::encodedDictionary);
}

// Whichever encoder takes a block, as threads come: only the column's history counts.
TEST(TextEncodings, ChunksFollowFromTheHistoryAlone) {
  std::mt19937_64 random(11);
  TextHistory history;
  TextHistory ofManyEncoders;
  ChunkEncoder encoder;
  for (int block = 0; block < 120; ++block) {
    // New texts now and then, few or very many of them, long ones, and texts of other shapes.
    const std::uint64_t kind = random() % 8;
    const std::uint64_t distinct = kind == 0 ? 1u << 20 : 1 + random() % 800;
    const std::uint64_t first = kind == 1 ? random() % 10'000 : 0;
    const std::size_t tail = kind == 2 ? random() % 4000 : 0;
    const std::string before = block / 20 % 2 == 0 ? "" : kind == 3 ? "2024-" : "number ";
    TextColumn column;
    for (std::size_t rows = 1 + random() % 3000; rows > 0; --rows) {
      const std::uint64_t value = first + random() % distinct;
      const std::string text =
          before + std::to_string(value * value) + std::string(value % 3 * tail, 'x');
      column.add(value % 50 == 7 ? nullptr : value % 50 == 8 ? "" : text.c_str());
    }
    ByteBuffer chunk;
    encoder.appendTexts(column.values(), history, chunk);
    ByteBuffer ofAnother;
    ChunkEncoder().appendTexts(column.values(), ofManyEncoders, ofAnother);
    ASSERT_TRUE(std::ranges::equal(chunk.bytes(), ofAnother.bytes())) << "block " << block;
    encodingAfterRoundTrip(column, chunk);
  }
}

TEST(KeyChunks, EveryOrderAndEveryNumberOfRows) {
  std::mt19937 random(6);
  for (std::size_t rows : {1, 5, 127, 128, 129, 2047, 2048, 2049, 5000, 65536, 65664, 131073}) {
    for (const int width : {1, 7, 20, 32}) {
      Keys keys(rows);
      for (std::uint32_t& key : keys) {
        key = random() >> (32 - width);
        if (random() % 100 == 0) {
          key = random();  // an exception, or a null
        }
      }
      expectRoundTrip(keys, StorageCode::key);
      expectRoundTrip(keys, StorageCode::ascendingKey);  // an order that is broken
      std::sort(keys.begin(), keys.end());
      keys[0] = 0xFFFFFFFF;
      expectRoundTrip(keys, StorageCode::ascendingKey);
      std::reverse(keys.begin(), keys.end());
      expectRoundTrip(keys, StorageCode::descendingKey);
    }
  }
}

TEST(ChunkDecoder, DamageIsFoundWhateverTheChecksumSays) {
  std::mt19937 random(7);
  Keys keys(700);
  for (std::uint32_t& key : keys) {
    key = random() % 50 == 0 ? random() : random() % 1000;
  }
  double sum = 0;
  const Numbers numberColumns[] = {
      made(700, [&] { return bits(random() % 10 == 0 ? double(random() % 100) : 0); }),
      made(700, [&] { return bits(std::sqrt(random() % 90)); }),
      made(700, [&] { return bits(sum += random() % 9); }),
      made(700, [&] { return bits(double(random() % 100'000)); })};
  TextColumn texts;
  for (int i = 0; i < 700; ++i) {
    texts.add(std::to_string(random() % 300).c_str());
  }
  // Calls decode(chunk, rows) with every byte of the values changed, and with other row counts.
  const auto expectNoHarm = [](const ByteBuffer& chunk, std::uint32_t wrongRows, auto decode) {
    ByteBuffer raw;
    ASSERT_EQ(uncompressSnappy(chunk.bytes(4), kMaxRawSize, raw), ReadStatus::ok);
    for (std::size_t i = 0; i < std::min<std::size_t>(raw.size(), 400); ++i) {
      for (const unsigned char mask : {0x01, 0x80, 0xFF}) {
        raw.data()[i] ^= mask;
        ByteBuffer forged;
        forged.append(4);
        appendSnappy(raw.bytes(), forged);
        storePacked(forged.data(), checksum(forged.bytes(4)));
        (void)decode(forged.bytes(), 700);
        raw.data()[i] ^= mask;
      }
    }
    EXPECT_EQ(decode(chunk.bytes(), wrongRows), ReadStatus::corrupted);
  };
  ChunkDecoder decoder;
  ByteBuffer out;
  for (const StorageCode code : {StorageCode::key, StorageCode::ascendingKey}) {
    ByteBuffer chunk;
    ChunkEncoder().appendKeys(keys, code, chunk);
    for (const std::uint32_t wrongRows : {699, 828}) {
      expectNoHarm(chunk, wrongRows, [&](Bytes bytes, std::uint32_t rows) {
        return decoder.decodeKeys(bytes, code, rows, out);
      });
    }
  }
  for (const Numbers& numbers : numberColumns) {
    ByteBuffer chunk;
    ChunkEncoder().appendNumbers(numbers, chunk);
    expectNoHarm(chunk, 708, [&](Bytes bytes, std::uint32_t rows) {
      return decoder.decodeNumbers(bytes, rows, out);
    });
  }
  DecodedTexts decodedTexts;
  ByteBuffer chunk;
  ChunkEncoder().appendTexts(texts.values(), chunk);
  expectNoHarm(chunk, 701, [&](Bytes bytes, std::uint32_t rows) {
    return decoder.decodeTexts(bytes, rows, decodedTexts);
  });
}

TEST(ChunkDecoder, ReportsTheNumberOfAnUnknownEncoding) {
  ByteBuffer chunk;
  chunk.append(4);
  const unsigned char raw[] = {77, 0, 0, 0, 0, 0, 0, 0, 0};
  appendSnappy(raw, chunk);
  storePacked(chunk.data(), checksum(chunk.bytes(4)));
  ChunkDecoder decoder;
  ByteBuffer numbers;
  EXPECT_EQ(decoder.decodeNumbers(chunk.bytes(), 1, numbers), ReadStatus::corrupted);
  EXPECT_EQ(decoder.unknownEncoding(), 77);
  chunk.data()[0] ^= 1;
  EXPECT_EQ(decoder.decodeNumbers(chunk.bytes(), 1, numbers), ReadStatus::wrongChecksum);
  EXPECT_EQ(decoder.unknownEncoding(), -1);
}

// Typed by hand: an 8-byte literal has the tag (8 - 1) << 2.
TEST(ChunkEncoder, GoldenChunks) {
  const auto chunkOf = [](auto append) {
    ByteBuffer chunk;
    append(chunk);
    return std::vector<unsigned char>(chunk.data(), chunk.data() + chunk.size());
  };
  // Fewer than 128 keys: no packed ones, then 7 bits a byte, the last byte with its top bit.
  EXPECT_EQ(chunkOf([](ByteBuffer& out) {
              ChunkEncoder().appendKeys(Keys{1, 300}, StorageCode::key, out);
            }),
            (std::vector<unsigned char>{0x0B, 0x49, 0xCE, 0xC0,  // checksum
                                        8, 7 << 2, 0, 0, 0, 0,   // packed keys
                                        0x81, 0x2C, 0x82, 0}));
  // Encoding 1: exponent 1, 4 bits a code, none missing, base 10; the codes are 5, 0 and 15.
  EXPECT_EQ(chunkOf([](ByteBuffer& out) {
              ChunkEncoder().appendNumbers(Numbers{bits(1.5), bits(1.0), bits(2.5)}, out);
            }),
            (std::vector<unsigned char>{0x22, 0x44, 0xC7, 0xB6, 14, 13 << 2, 1, 1, 4,    0,
                                        10,   0,    0,    0,    0,  0,       0, 0, 0x05, 0x0F}));
  // Encoding 0: lengths of one byte, the null one all ones.
  TextColumn texts;
  texts.add("ab");
  texts.add(nullptr);
  texts.add("");
  EXPECT_EQ(
      chunkOf([&](ByteBuffer& out) { ChunkEncoder().appendTexts(texts.values(), out); }),
      (std::vector<unsigned char>{0x6C, 0x79, 0xD4, 0xA7, 7, 6 << 2, 0, 1, 2, 0xFF, 0, 'a', 'b'}));
}

TEST(SnappyStreams, EndWhereTheyEndWhateverFollows) {
  std::mt19937 random(8);
  for (const std::size_t size : {0, 1, 59, 60, 61, 300, 70000, 200000}) {
    std::string raw(size, 'x');
    for (std::size_t i = 0; i < size; i += 1 + random() % 40) {
      raw[i] = static_cast<char>(random());
    }
    ByteBuffer stream;
    const std::size_t length = appendSnappy(asBytes(raw), stream);
    stream.append(Bytes(asBytes("more")));
    std::size_t end = 0;
    EXPECT_EQ(findSnappyEnd(stream.bytes(), end), ReadStatus::ok);
    EXPECT_EQ(end, length);
    EXPECT_EQ(findSnappyEnd(stream.bytes().first(length - 1), end), ReadStatus::truncated);
  }
}

}  // namespace kelvarin
