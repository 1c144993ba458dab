#include "columnar/codecs/template_parser.h"

#include <algorithm>
#include <bit>

#include <emmintrin.h>

#include "columnar/codecs/digit_printing.h"

namespace kelvarin {

namespace {

constexpr std::size_t kWord = sizeof(std::uint64_t);

// What is left of a text. Behind it there may be more bytes in memory, which are loaded with it.
struct Rest {
  const unsigned char* bytes;
  const unsigned char* end;
  const unsigned char* endOfMemory;

  std::size_t size() const { return static_cast<std::size_t>(end - bytes); }
  std::uint64_t eight(std::size_t offset = 0) const {
    const unsigned char* from = bytes + offset;
    std::uint64_t word = 0;
    if (endOfMemory - from >= static_cast<std::ptrdiff_t>(kWord)) [[likely]] {
      word = loadPacked<std::uint64_t>(from);
    } else if (from < endOfMemory) {
      std::memcpy(&word, from, static_cast<std::size_t>(endOfMemory - from));
    }
    return word;
  }
};

// How many of 16 characters a text field takes.
std::size_t countAmongSixteen(const unsigned char* bytes, TextExtent extent) {
  const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  // Which are `first` or one of the `count - 1` after it, by comparing with the lowest signed
  // bytes.
  const auto isInRange = [](__m128i values, char first, char count) {
    const __m128i shifted = _mm_sub_epi8(values, _mm_set1_epi8(static_cast<char>(first - 128)));
    return _mm_cmplt_epi8(shifted, _mm_set1_epi8(static_cast<char>(count - 128)));
  };
  const __m128i lowered = _mm_or_si128(characters, _mm_set1_epi8(0x20));
  __m128i isTaken = _mm_or_si128(isInRange(lowered, 'a', 26), characters);  // or beyond ASCII
  if (extent == TextExtent::lettersAndDigits) {
    isTaken = _mm_or_si128(isTaken, isInRange(characters, '0', 10));
  }
  return static_cast<std::size_t>(
      std::countr_one(static_cast<unsigned>(_mm_movemask_epi8(isTaken))));
}

std::size_t countText(const Rest& rest, TextExtent extent) {
  constexpr std::size_t kGroup = sizeof(__m128i);
  if (extent == TextExtent::rest) {
    return rest.size();
  }
  std::size_t count = 0;
  while (rest.endOfMemory - (rest.bytes + count) >= static_cast<std::ptrdiff_t>(kGroup)) {
    const std::size_t taken = countAmongSixteen(rest.bytes + count, extent);
    count += taken;
    if (taken < kGroup || count >= rest.size()) {
      return std::min(count, rest.size());
    }
  }
  while (count < rest.size() &&
         (isLetter(rest.bytes[count]) ||
          (extent == TextExtent::lettersAndDigits && isDigit(rest.bytes[count])))) {
    ++count;
  }
  return count;
}

// These return the number of bytes of a field, 0 where it does not fit.

// Digits of the widths that `parseEight(characters, width, number)` parses, one part after another;
// `step(width)` is what each part multiplies the number before it by.
template <typename ParseEight, typename Step>
std::size_t parseParts(const Rest& rest, int width, std::uint64_t& number, ParseEight parseEight,
                       Step step) {
  const auto size = static_cast<std::size_t>(width);
  if (rest.size() < size) {
    return 0;
  }
  bool areDigits = true;
  number = 0;
  for (std::size_t first = 0; first < size; first += kWord) {
    const auto part = static_cast<int>(std::min(size - first, kWord));
    std::uint64_t digits = 0;
    areDigits &= parseEight(rest.eight(first), part, digits);
    number = number * step(part) + digits;
  }
  return areDigits ? size : 0;
}

std::size_t parseFixedDigits(const Rest& rest, int width, std::uint64_t& number) {
  const auto size = static_cast<std::size_t>(width);
  if (size <= kWord) [[likely]] {
    const bool areThere = rest.size() >= size && parseUpToEightDigits(rest.eight(), width, number);
    return areThere ? size : 0;
  }
  return parseParts(
      rest, width, number,
      [](std::uint64_t eight, int part, std::uint64_t& digits) {
        return parseUpToEightDigits(eight, part, digits);
      },
      powerOfTen);
}

std::size_t parseFixedHex(const Rest& rest, int width, std::uint64_t letterOffset,
                          std::uint64_t& number) {
  return parseParts(
      rest, width, number,
      [letterOffset](std::uint64_t eight, int part, std::uint64_t& digits) {
        return parseUpToEightHex(eight, part, letterOffset, digits);
      },
      [](int part) { return std::uint64_t{1} << (4 * part); });
}

// All digits that the rest begins with.
std::size_t parseVaryingDigits(const Rest& rest, std::uint64_t& number) {
  const std::uint64_t digits = rest.eight() ^ 0x3030303030303030;
  const std::uint64_t others = nonDigits(digits);
  std::size_t count = std::min<std::size_t>(
      rest.size(), others == 0 ? kWord : static_cast<std::size_t>(std::countr_zero(others)) / 8);
  if (count == 0) {
    return 0;
  }
  if (count < kWord) [[likely]] {
    number = numberOfEight(digits << (8 * (kWord - count)));
    return count;
  }
  while (count < rest.size() && isDigit(rest.bytes[count])) {
    ++count;
  }
  return count > kMaxDecimalDigits ? 0 : parseFixedDigits(rest, static_cast<int>(count), number);
}

std::size_t parseNumber(const Rest& rest, std::uint64_t& number) {
  const std::size_t width = parseVaryingDigits(rest, number);
  return width > 1 && rest.bytes[0] == '0' ? 0 : width;
}

std::size_t parseDecimal(const Rest& rest, int fractionWidth, unsigned char separator,
                         std::uint64_t& number) {
  const std::size_t whole = parseNumber(rest, number);
  const std::size_t size = whole + 1 + static_cast<std::size_t>(fractionWidth);
  std::uint64_t fraction = 0;
  if (whole == 0 || size - 1 > kMaxDecimalDigits || rest.size() < size ||
      rest.bytes[whole] != separator) {
    return 0;
  }
  const Rest behind{rest.bytes + whole + 1, rest.end, rest.endOfMemory};
  if (parseFixedDigits(behind, fractionWidth, fraction) == 0) {
    return 0;
  }
  number = number * powerOfTen(fractionWidth) + fraction;
  return size;
}

std::size_t parseMoment(const Rest& rest, const MomentPattern& pattern, std::uint64_t& number) {
  return rest.size() >= pattern.size() && pattern.parse(rest.bytes, number) ? pattern.size() : 0;
}

}  // namespace

TemplateParser::TemplateParser(const TextTemplate& shape) {
  for (const TemplatePiece& piece : shape.pieces) {
    Step& step = m_steps.emplace_back();
    step.kind = piece.kind;
    step.width = piece.width;
    step.extent = piece.extent;
    m_fieldCount += piece.isField();
    if (piece.kind == PieceKind::moment) {
      (void)m_moments.emplace_back().compile(piece.bytes);
    } else if (piece.kind == PieceKind::fixed) {
      const std::size_t beginning = std::min(piece.bytes.size(), kWord);
      std::memcpy(&step.beginning, piece.bytes.data(), beginning);
      step.mask = beginning == 0 ? 0 : ~std::uint64_t{0} >> (8 * (kWord - beginning));
      step.fixed = piece.bytes;
    } else if (piece.kind == PieceKind::decimal) {
      step.separator = static_cast<unsigned char>(piece.bytes[0]);
    }
  }
}

bool TemplateParser::parse(Bytes text, const unsigned char* endOfMemory,
                           FieldValues& values) const {
  Rest rest{text.data(), text.data() + text.size(), endOfMemory};
  FieldValue* value = values.data();
  const MomentPattern* moment = m_moments.data();
  for (const Step& step : m_steps) {
    std::size_t size = 0;
    switch (step.kind) {
      case PieceKind::fixed:
        size = step.fixed.size();
        if (rest.size() < size || ((rest.eight() ^ step.beginning) & step.mask) != 0 ||
            (size > kWord && std::memcmp(rest.bytes, step.fixed.data(), size) != 0)) {
          return false;
        }
        rest.bytes += size;
        continue;
      case PieceKind::digits:
        size = parseFixedDigits(rest, step.width, value->number);
        break;
      case PieceKind::number:
        size = parseNumber(rest, value->number);
        break;
      case PieceKind::varyingDigits:
        size = parseVaryingDigits(rest, value->number);
        value->number += countOfShorterDigits(std::max(static_cast<int>(size), 1));
        break;
      case PieceKind::lowerHex:
        size = parseFixedHex(rest, step.width, kLowerLetterOffset, value->number);
        break;
      case PieceKind::upperHex:
        size = parseFixedHex(rest, step.width, kUpperLetterOffset, value->number);
        break;
      case PieceKind::decimal:
        size = parseDecimal(rest, step.width, step.separator, value->number);
        break;
      case PieceKind::moment:
        size = parseMoment(rest, *moment++, value->number);
        break;
      case PieceKind::text:
        size = countText(rest, step.extent);
        value->text = {rest.bytes, size};
        break;
    }
    if (size == 0 && step.kind != PieceKind::text) {
      return false;
    }
    rest.bytes += size;
    ++value;
  }
  return rest.size() == 0;
}

}  // namespace kelvarin
