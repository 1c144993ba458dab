#include "columnar/codecs/template_parser.h"

#include <algorithm>
#include <bit>

#include <emmintrin.h>

#include "columnar/codecs/digit_printing.h"
#include "columnar/codecs/hex_parsing.h"

namespace kelvarin {

namespace {

constexpr std::size_t kWord = sizeof(std::uint64_t);

// What is left of a text. Behind it there may be more bytes in memory, which are loaded with it.
struct Rest {
  const unsigned char* bytes;
  const unsigned char* end;
  const unsigned char* endOfMemory;

  std::size_t size() const { return static_cast<std::size_t>(end - bytes); }
  std::uint64_t eight(std::size_t offset = 0) const { return load<std::uint64_t>(bytes + offset); }
  __m128i sixteen() const { return load<__m128i>(bytes); }

 private:
  // With zeros behind the end of the memory.
  template <typename T>
  T load(const unsigned char* from) const {
    T loaded{};
    if (endOfMemory - from >= static_cast<std::ptrdiff_t>(sizeof loaded)) [[likely]] {
      std::memcpy(&loaded, from, sizeof loaded);
    } else if (from < endOfMemory) {
      std::memcpy(&loaded, from, static_cast<std::size_t>(endOfMemory - from));
    }
    return loaded;
  }
};

// Both are evaluated: neither is worth a branch.
constexpr bool bothAre(bool one, bool other) {
  return (static_cast<int>(one) & static_cast<int>(other)) != 0;
}

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

[[gnu::always_inline]] inline std::size_t parseFixedDigits(const Rest& rest, int width,
                                                           std::uint64_t& number) {
  const auto size = static_cast<std::size_t>(width);
  if (rest.size() < size) {
    return 0;
  }
  if (size <= kWord) [[likely]] {
    return parseUpToEightDigits(rest.eight(), width, number) ? size : 0;
  }
  bool areDigits = parseUpToEightDigits(rest.eight(), kWord, number);
  for (std::size_t done = kWord; done < size; done += kWord) {
    const auto part = static_cast<int>(std::min(size - done, kWord));
    std::uint64_t digits = 0;
    areDigits &= parseUpToEightDigits(rest.eight(done), part, digits);
    number = number * powerOfTen(part) + digits;
  }
  return areDigits ? size : 0;
}

[[gnu::always_inline]] inline std::size_t parseFixedHex(const Rest& rest, int width, char letterA,
                                                        std::uint64_t& number) {
  const auto size = static_cast<std::size_t>(width);
  const bool fits =
      bothAre(rest.size() >= size, parseUpToSixteenHex(rest.sixteen(), width, letterA, number));
  return fits ? size : 0;
}

// All digits that the rest begins with.
[[gnu::always_inline]] inline std::size_t parseVaryingDigits(const Rest& rest,
                                                             std::uint64_t& number) {
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

[[gnu::always_inline]] inline std::size_t parseNumber(const Rest& rest, std::uint64_t& number) {
  const std::size_t width = parseVaryingDigits(rest, number);
  const bool hasLeadingZero = (width > 1) & (static_cast<char>(rest.eight()) == '0');
  return hasLeadingZero ? 0 : width;
}

[[gnu::always_inline]] inline std::size_t parseDecimal(const Rest& rest, int fractionWidth,
                                                       unsigned char separator,
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

[[gnu::always_inline]] inline std::size_t parseMoment(const Rest& rest,
                                                      const MomentPattern& pattern,
                                                      std::uint64_t& number) {
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
      (void)step.moment.compile(piece.bytes);
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

// Reads one piece of all texts that have fitted so far. Those that do not fit are left out.
void TemplateParser::takePiece(const Step& step, const TextBatch& batch, ParsedTexts& parsed,
                               std::uint64_t* values) {
  // `parse(rest, row)` returns the number of bytes, 0 where they do not fit.
  const auto forEach = [&](auto parse) {
    std::size_t fitting = 0;
    for (const std::uint16_t row : parsed.rows()) {
      const Rest rest{parsed.m_next[row], batch.begins[row + 1u], batch.endOfMemory};
      const std::size_t size = parse(rest, row);
      parsed.m_next[row] += size;
      parsed.m_rows[fitting] = row;
      fitting += size > 0;
    }
    parsed.m_rowCount = fitting;
  };
  switch (step.kind) {
    case PieceKind::fixed:
      return forEach([&](const Rest& rest, std::uint16_t) {
        const std::size_t size = step.fixed.size();
        const bool fits =
            bothAre(rest.size() >= size, ((rest.eight() ^ step.beginning) & step.mask) == 0);
        const bool isWhole =
            size <= kWord ||
            (fits && std::memcmp(rest.bytes + kWord, step.fixed.data() + kWord, size - kWord) == 0);
        return fits && isWhole ? size : 0;
      });
    case PieceKind::digits:
      return forEach([&](const Rest& rest, std::uint16_t row) {
        return parseFixedDigits(rest, step.width, values[row]);
      });
    case PieceKind::number:
      return forEach(
          [&](const Rest& rest, std::uint16_t row) { return parseNumber(rest, values[row]); });
    case PieceKind::varyingDigits:
      return forEach([&](const Rest& rest, std::uint16_t row) {
        const std::size_t size = parseVaryingDigits(rest, values[row]);
        values[row] += countOfShorterDigits(std::max(static_cast<int>(size), 1));
        return size;
      });
    case PieceKind::lowerHex:
      return forEach([&](const Rest& rest, std::uint16_t row) {
        return parseFixedHex(rest, step.width, 'a', values[row]);
      });
    case PieceKind::upperHex:
      return forEach([&](const Rest& rest, std::uint16_t row) {
        return parseFixedHex(rest, step.width, 'A', values[row]);
      });
    case PieceKind::decimal:
      return forEach([&](const Rest& rest, std::uint16_t row) {
        return parseDecimal(rest, step.width, step.separator, values[row]);
      });
    case PieceKind::moment:
      return forEach([&](const Rest& rest, std::uint16_t row) {
        return parseMoment(rest, step.moment, values[row]);
      });
    case PieceKind::text:
      for (const std::uint16_t row : parsed.rows()) {
        const unsigned char*& next = parsed.m_next[row];
        const std::size_t size =
            countText({next, batch.begins[row + 1u], batch.endOfMemory}, step.extent);
        values[row] = static_cast<std::uint64_t>(next - batch.bytes) |
                      std::uint64_t{size} << ParsedTexts::kSizeShift;
        next += size;
      }
  }
}

void TemplateParser::parse(const TextBatch& batch, std::span<const std::uint16_t> rows,
                           ParsedTexts& parsed) const {
  std::copy(rows.begin(), rows.end(), parsed.m_rows.begin());
  parsed.m_rowCount = rows.size();
  for (const std::uint16_t row : rows) {
    parsed.m_next[row] = batch.begins[row];
  }
  parsed.m_values.resize(std::max(parsed.m_values.size(), m_fieldCount * TextBatch::kMaxTexts));
  std::uint64_t* values = parsed.m_values.data();
  for (const Step& step : m_steps) {
    takePiece(step, batch, parsed, values);
    values += step.kind == PieceKind::fixed ? 0 : TextBatch::kMaxTexts;
  }
  std::size_t whole = 0;
  for (const std::uint16_t row : parsed.rows()) {
    parsed.m_rows[whole] = row;
    whole += parsed.m_next[row] == batch.begins[row + 1u];
  }
  parsed.m_rowCount = whole;
}

}  // namespace kelvarin
