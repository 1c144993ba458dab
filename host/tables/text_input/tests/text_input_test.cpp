#include "host/tables/text_input/text_input.h"

#include <zlib.h>
#include <zstd.h>

#include <random>

#include <gtest/gtest.h>

#include "host/tables/files/tests/table_folder.h"

namespace kelvarin {

using testing::TableFolder;

namespace {

using std::string_literals::operator""s;

std::string gzipped(const std::string& text) {
  z_stream stream{};
  constexpr int kGzip = 16;
  EXPECT_EQ(::deflateInit2(&stream, 6, Z_DEFLATED, MAX_WBITS + kGzip, 8, Z_DEFAULT_STRATEGY), Z_OK);
  std::string bytes(::deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_out = static_cast<uInt>(bytes.size());
  EXPECT_EQ(::deflate(&stream, Z_FINISH), Z_STREAM_END);
  bytes.resize(stream.total_out);
  ::deflateEnd(&stream);
  return bytes;
}

std::string zstandard(const std::string& text) {
  std::string bytes(::ZSTD_compressBound(text.size()), '\0');
  bytes.resize(::ZSTD_compress(bytes.data(), bytes.size(), text.data(), text.size(), 3));
  return bytes;
}

struct Read {
  std::string text;
  std::string error;
  TextEncoding encoding = TextEncoding::utf8;
};

// Reads in steps of at most `step` bytes.
Read readAll(const std::string& path, std::optional<TextEncoding> encoding, std::size_t step) {
  TextInput input;
  Read read;
  if (const auto status = input.open(QString::fromStdString(path), encoding); !status) {
    read.error = status.error().toStdString();
    return read;
  }
  read.encoding = input.encoding();
  std::string bytes(step, '\0');
  for (bool isLast = false; !isLast;) {
    const auto got = input.readNext(bytes.data(), bytes.size());
    if (!got) {
      read.error = got.error().toStdString();
      return read;
    }
    read.text += bytes.substr(0, got->size);
    isLast = got->isLast;
  }
  return read;
}

std::string someText() {
  std::mt19937 random(7);
  std::string text;
  for (int i = 0; i < 60'000; ++i) {
    text += std::to_string(random() % 100'000) + (i % 5 == 0 ? "\n" : ",");
  }
  return text;
}

}  // namespace

TEST(TextInput, UncompressesWhateverTheStep) {
  const TableFolder folder;
  const std::string text = someText();
  const std::string half = text.substr(0, text.size() / 2);
  const std::string rest = text.substr(half.size());
  const std::string files[] = {text,
                               gzipped(text),
                               gzipped(half) + gzipped(rest),
                               gzipped(text) + std::string(1000, '\0'),
                               zstandard(text),
                               zstandard(half) + zstandard("") + zstandard(rest)};
  for (const std::string& bytes : files) {
    const std::string path = folder.write("a", bytes);
    for (const std::size_t step : {1, 7, 100'000, 10'000'000}) {
      const Read read = readAll(path, std::nullopt, step);
      ASSERT_EQ(read.error, "");
      ASSERT_TRUE(read.text == text) << step;
    }
  }
  EXPECT_EQ(readAll(folder.write("none", gzipped("")), std::nullopt, 10).text, "");
}

TEST(TextInput, WhatComesBeforeDamageIsRead) {
  const TableFolder folder;
  const std::string text = someText();
  for (const std::string& bytes : {gzipped(text), zstandard(text)}) {
    for (const std::size_t size : {bytes.size() - 1, bytes.size() / 2}) {
      const Read cut =
          readAll(folder.write("cut", bytes.substr(0, size)), TextEncoding::utf8, 1000);
      EXPECT_TRUE(text.starts_with(cut.text));
      EXPECT_GT(cut.text.size(), text.size() / 4);
      EXPECT_NE(cut.error.find("data is cut off, after " + std::to_string(size) + " bytes"),
                std::string::npos)
          << cut.error;
    }
    std::string damaged = bytes;
    damaged[damaged.size() - 6] ^= 0x55;
    damaged[damaged.size() / 2] ^= 0x55;
    const Read read = readAll(folder.write("bad", damaged), TextEncoding::utf8, 1000);
    EXPECT_NE(read.error.find("data is damaged near byte "), std::string::npos) << read.error;
    const Read longer = readAll(folder.write("more", bytes + "more"), TextEncoding::utf8, 1000);
    EXPECT_TRUE(longer.text == text);
    const std::size_t at = longer.error.find("near byte ") + 10;
    ASSERT_LT(at, longer.error.size()) << longer.error;
    EXPECT_NEAR(std::stod(longer.error.substr(at)), static_cast<double>(bytes.size()), 4);
  }
}

// A gigabyte of zeros in a megabyte.
TEST(TextInput, OnlyWhatIsReadIsUncompressed) {
  const TableFolder folder;
  const std::string part = gzipped(std::string(64 << 20, '0'));
  std::string bytes;
  for (int i = 0; i < 16; ++i) {
    bytes += part;
  }
  TextInput input;
  ASSERT_TRUE(input.open(QString::fromStdString(folder.write("bomb", bytes)), std::nullopt));
  std::string start(1000, '\0');
  ASSERT_TRUE(input.readNext(start.data(), start.size()));
  EXPECT_EQ(start, std::string(1000, '0'));
  EXPECT_LT(input.fractionRead(), 0.2f);
}

TEST(TextInput, RecodesToUtf8) {
  const TableFolder folder;
  const std::string text = "na\u00EFve,\u20AC 5,\U0001F600\r\n";
  const std::string little = "n\0a\0\xEF\0v\0e\0,\0\xAC\x20 \0005\0,\0\x3D\xD8\x00\xDE\r\0\n\0"s;
  std::string big = little;
  for (std::size_t i = 0; i < big.size(); i += 2) {
    std::swap(big[i], big[i + 1]);
  }
  struct Case {
    std::string bytes;
    std::optional<TextEncoding> known;
    TextEncoding found;
    std::string text;
  };
  const Case cases[] = {
      {little, TextEncoding::utf16Little, TextEncoding::utf16Little, text},
      {"\xFF\xFE" + little, std::nullopt, TextEncoding::utf16Little, "\uFEFF" + text},
      {"\xFE\xFF" + big, std::nullopt, TextEncoding::utf16Big, "\uFEFF" + text},
      {big, TextEncoding::utf16, TextEncoding::utf16Big, text},
      {little, TextEncoding::utf16, TextEncoding::utf16Little, text},
      {"na\xEFve,\x80 5", std::nullopt, TextEncoding::windows1252, "na\u00EFve,\u20AC 5"},
      {"na\xEFve,\x80 5", TextEncoding::latin1, TextEncoding::latin1, "na\u00EFve,\u0080 5"},
      {text, TextEncoding::utf8, TextEncoding::utf8, text},
      // Halves of characters and of units are no UTF-8.
      {"a\0\x3D\xD8"s, TextEncoding::utf16Little, TextEncoding::utf16Little, "a\xFF"},
      {"\x3D\xD8"s + "a\0b"s, TextEncoding::utf16Little, TextEncoding::utf16Little,
       "\xED\xA0\xBD"
       "a\xFF"},
  };
  for (const Case& file : cases) {
    for (const std::string& bytes : {file.bytes, gzipped(file.bytes)}) {
      for (const std::size_t step : {1, 2, 1000}) {
        const Read read = readAll(folder.write("a", bytes), file.known, step);
        EXPECT_EQ(read.error, "");
        EXPECT_EQ(read.text, file.text);
        EXPECT_EQ(read.encoding, file.found);
      }
    }
  }
}

// Also where a character lies on the border of two pieces.
TEST(TextInput, RecodesLongTexts) {
  const TableFolder folder;
  std::string units;
  std::string bytes;
  std::string ofUnits;
  std::string ofBytes;
  for (int i = 0; i < 100'000; ++i) {
    units += i % 3 == 0 ? "\x3D\xD8\x00\xDE"s : "x\0"s;
    ofUnits += i % 3 == 0 ? "\U0001F600" : "x";
    bytes += i % 3 == 0 ? '\x80' : 'y';
    ofBytes += i % 3 == 0 ? "\u20AC" : "y";
  }
  EXPECT_TRUE(readAll(folder.write("u", units), TextEncoding::utf16Little, 777).text == ofUnits);
  EXPECT_TRUE(readAll(folder.write("b", bytes), TextEncoding::windows1252, 777).text == ofBytes);
}

TEST(TextEncoding, IsFoundByTheBytes) {
  const auto found = [](const std::string& bytes, bool isWhole = true) {
    return nameOfEncoding(encodingOfStart(bytes, isWhole)).toStdString();
  };
  EXPECT_EQ(found("a,\u00E4\n"), "UTF-8");
  EXPECT_EQ(found("a\xC3", false), "UTF-8") << "cut within a character";
  EXPECT_EQ(found("a\xE9,b"), "windows-1252");
  EXPECT_EQ(found("\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\xFF"), "UTF-8")
      << "one wrong byte is a fault, whose position is reported";
  EXPECT_EQ(found("a\0,\0b\0\n\0"s), "UTF-16LE");
  EXPECT_EQ(found("\0a\0,\0b\0\n"s), "UTF-16BE");
  EXPECT_EQ(found("a\0b"s + std::string(100, 'x')), "UTF-8") << "a stray zero";
}

}  // namespace kelvarin
