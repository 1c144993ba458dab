#include "columnar/codecs/template_batch.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <deque>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace kelvarin {

namespace {

using Random = std::mt19937_64;

std::uint64_t below(Random& random, std::uint64_t limit) {
  return random() % limit;
}

std::string padded(const std::string& digits, std::size_t width) {
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

std::string momentText(std::uint64_t moment, const std::string& pattern) {
  const bool hasDate = pattern.find('\0') != std::string::npos;
  const auto fractionDigits =
      static_cast<std::size_t>(std::count(pattern.begin(), pattern.end(), '\6'));
  const std::uint64_t power = powerOfTen(static_cast<int>(fractionDigits));
  const std::string fraction = padded(std::to_string(moment % power), fractionDigits);
  const bool hasSecond = pattern.find('\5') != std::string::npos;
  std::uint64_t seconds = hasSecond ? moment / power : moment * 60;
  if (pattern.find('\3') == std::string::npos) {
    seconds = moment * 86400;
  }
  const std::chrono::sys_days first = std::chrono::year{0} / 1 / 1;
  const std::chrono::year_month_day date(first + std::chrono::days(hasDate ? seconds / 86400 : 0));
  std::string text;
  std::size_t nextOfFraction = 0;
  for (const char character : pattern) {
    const auto two = [&](std::uint64_t number) { text += padded(std::to_string(number), 2); };
    switch (character) {
      case 0:
        text += padded(std::to_string(static_cast<int>(date.year())), 4);
        break;
      case 1:
        two(static_cast<unsigned>(date.month()));
        break;
      case 2:
        two(static_cast<unsigned>(date.day()));
        break;
      case 3:
        two(seconds / 3600 % 24);
        break;
      case 4:
        two(seconds / 60 % 60);
        break;
      case 5:
        two(seconds % 60);
        break;
      case 6:
        text += fraction[nextOfFraction++];
        break;
      default:
        text += character;
    }
  }
  return text;
}

// What the piece is in words: no code of the printer.
std::string expectedText(const TemplatePiece& piece, std::uint64_t number) {
  const auto width = static_cast<std::size_t>(piece.width);
  const std::string digits = std::to_string(number);
  char hex[32];
  switch (piece.kind) {
    case PieceKind::fixed:
      return piece.bytes;
    case PieceKind::digits:
      return padded(digits, width);
    case PieceKind::number:
      return digits;
    case PieceKind::varyingDigits: {
      std::size_t count = 1;
      std::uint64_t first = 0;
      for (std::uint64_t power = 10; number - first >= power; power *= 10) {
        first += power;
        ++count;
      }
      return padded(std::to_string(number - first), count);
    }
    case PieceKind::decimal: {
      const std::string all = padded(digits, width + 1);
      return all.substr(0, all.size() - width) + piece.bytes + all.substr(all.size() - width);
    }
    case PieceKind::moment:
      return momentText(number, piece.bytes);
    default:
      std::snprintf(hex, sizeof hex, piece.kind == PieceKind::lowerHex ? "%0*llx" : "%0*llX",
                    piece.width, static_cast<unsigned long long>(number));
      return hex;
  }
}

const std::vector<std::string> kPatterns = {
    {"\0-\1-\2", 5},
    {"\2.\1.\0 \3:\4", 9},
    {"\0\1\2T\3\4\5.\6\6\6Z", 12},
    {"\3:\4:\5,\6\6\6\6\6\6\6", 13},
    {"at \3:\4", 6},
    {"day \2 of \1.\0 at \3:\4:\5", 21},
};

TemplatePiece randomPiece(Random& random) {
  TemplatePiece piece;
  piece.kind = static_cast<PieceKind>(below(random, 9));
  piece.width = 1 + static_cast<int>(below(random, 16));
  if (piece.kind == PieceKind::fixed) {
    const std::size_t size = below(random, 8) == 0 ? below(random, 256) : below(random, 24);
    piece.bytes = std::string(size, static_cast<char>('a' + below(random, 26)));
  } else if (piece.kind == PieceKind::decimal) {
    piece.bytes = ".";
  } else if (piece.kind == PieceKind::moment) {
    piece.bytes = kPatterns[below(random, kPatterns.size())];
  }
  return piece;
}

// A piece and its values.
struct Values {
  TemplatePiece piece;
  PiecePrinter printer;
  std::uint64_t largest = 0;
  std::vector<std::uint64_t> numbers;
  DecodedTexts texts;

  Values(Random& random, std::size_t rows) : piece(randomPiece(random)) {
    EXPECT_TRUE(printer.set(piece));
    if (piece.kind == PieceKind::text) {
      for (std::size_t row = 0; row < rows; ++row) {
        texts.offsets.push_back(static_cast<std::uint32_t>(texts.bytes.size()));
        const std::size_t size = below(random, below(random, 10) == 0 ? 200 : 34);
        texts.bytes.put(static_cast<std::uint32_t>(size));
        std::fill_n(texts.bytes.append(size), size, static_cast<unsigned char>('A' + row % 26));
      }
      texts.bytes.append(kTextMargin);
    } else if (piece.kind != PieceKind::fixed) {
      // Numbers of few bits, or of all.
      const std::uint64_t limit = largestNumber(piece) >> below(random, 60);
      for (std::size_t row = 0; row < rows; ++row) {
        const std::uint64_t number = random() >> below(random, 64);
        numbers.push_back(limit == ~std::uint64_t{0} ? number : number % (limit + 1));
      }
      const std::uint64_t highest = *std::max_element(numbers.begin(), numbers.end());
      largest = below(random, 2) == 0 ? highest : limit;
    }
  }

  std::string text(std::size_t row) const {
    if (piece.kind == PieceKind::text) {
      const unsigned char* text = texts.text(row);
      return std::string(asText({text + kLengthSize, loadPacked<std::uint32_t>(text)}));
    }
    return expectedText(piece, numbers.empty() ? 0 : numbers[row]);
  }
};

}  // namespace

TEST(TemplateBatch, PiecesAreWhatTheyAreAloneWhateverStandsBesideThem) {
  Random random(1);
  for (int round = 0; round < 3000; ++round) {
    const std::size_t rows = 1 + below(random, TemplateBatch::kMaxRows);
    std::deque<Values> all;
    for (std::size_t i = below(random, 9); i > 0; --i) {
      all.emplace_back(random, rows);
    }
    TemplateBatch batch;
    for (const Values& values : all) {
      if (values.piece.kind == PieceKind::text) {
        batch.addTexts(values.texts.bytes.data());
      } else if (values.piece.kind == PieceKind::fixed) {
        batch.addFixed(values.piece.bytes);
      } else {
        batch.addNumbers(values.printer, values.largest);
        std::uint64_t size = 0;
        for (const std::uint64_t number : values.numbers) {
          size += expectedText(values.piece, number).size();
        }
        ASSERT_EQ(values.printer.sizeOfAll(values.numbers, values.largest), size);
      }
    }
    batch.finish(rows);
    // A batch of some rows, and another one over it.
    for (std::size_t first : {std::size_t{0}, rows / 2}) {
      std::size_t field = 0;
      for (const Values& values : all) {
        if (values.piece.kind == PieceKind::text) {
          batch.setTexts(field++, values.texts.offsets.data() + first, 1);
        } else if (values.piece.kind != PieceKind::fixed) {
          batch.setNumbers(field++, std::span(values.numbers).subspan(first));
        }
      }
      for (std::size_t row = 0; row < rows - first; ++row) {
        std::string expected;
        for (const Values& values : all) {
          expected += values.text(first + row);
        }
        // Nothing is touched behind the margin that is asked for, so the sanitizer sees it.
        std::vector<unsigned char> memory(expected.size() + TemplateBatch::kOverrun);
        const unsigned char* end = batch.print(row, memory.data(), nullptr);
        ASSERT_EQ(std::string(memory.begin(), memory.begin() + (end - memory.data())), expected);
      }
    }
  }
}

TEST(TemplateBatch, ALongTextEndsBeforeTheEndOrIsRefused) {
  DecodedTexts texts;
  texts.bytes.put(std::uint32_t{100});
  std::fill_n(texts.bytes.append(100), 100, static_cast<unsigned char>('x'));
  texts.bytes.append(kTextMargin);
  texts.offsets = {0};
  TemplateBatch batch;
  batch.addTexts(texts.bytes.data());
  batch.addFixed("!");
  batch.finish(1);
  batch.setTexts(0, texts.offsets.data(), 0);
  std::vector<unsigned char> memory(100 + batch.longestText());
  EXPECT_EQ(batch.print(0, memory.data(), memory.data() + 100), memory.data() + 101);
  EXPECT_EQ(batch.print(0, memory.data(), memory.data() + 99), nullptr);
}

}  // namespace kelvarin
