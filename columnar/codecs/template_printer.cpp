#include "columnar/codecs/template_printer.h"

#include <algorithm>
#include <array>

#include "columnar/codecs/digit_printing.h"
#include "columnar/codecs/nested_texts.h"

namespace kelvarin {

namespace {

// Copies whole words, up to 15 bytes behind the end of either.
void copyShort(const unsigned char* from, std::size_t size, unsigned char* out) {
  constexpr std::size_t kWord = 16;
  std::memcpy(out, from, kWord);
  for (std::size_t i = kWord; i < size; i += kWord) {
    std::memcpy(out + i, from + i, kWord);
  }
}

// Texts of fields that are copied as so many bytes, without a call.
constexpr std::size_t kShortText = 16;

// The digits of the numbers below 1000, which are the most frequent, and how many these are.
struct SmallNumber {
  unsigned char digits[3];
  std::uint8_t count;
};

constexpr std::array<SmallNumber, 1000> kSmallNumbers = [] {
  std::array<SmallNumber, 1000> numbers{};
  for (unsigned i = 0; i < numbers.size(); ++i) {
    const int count = i < 10 ? 1 : i < 100 ? 2 : 3;
    unsigned rest = i;
    for (int digit = count; digit-- > 0; rest /= 10) {
      numbers[i].digits[digit] = static_cast<unsigned char>('0' + rest % 10);
    }
    numbers[i].count = static_cast<std::uint8_t>(count);
  }
  return numbers;
}();

unsigned char* printShortest(std::uint64_t number, unsigned char* out) {
  if (number < kSmallNumbers.size()) {
    const SmallNumber& small = kSmallNumbers[number];
    std::memcpy(out, &small, sizeof small);
    return out + small.count;
  }
  const int width = digitCount(number);
  printDigits(number, width, out);
  return out + width;
}

unsigned char* printVaryingDigits(std::uint64_t number, unsigned char* out) {
  int width = digitCount(number);
  width -= width > 1 && number < countOfShorterDigits(width);
  printDigits(number - countOfShorterDigits(width), width, out);
  return out + width;
}

// Prints all digits, and moves those of the fraction by the separator.
unsigned char* printDecimal(std::uint64_t number, int width, unsigned char separator,
                            unsigned char* out) {
  const int count = std::max(digitCount(number), width + 1);
  if (count <= 8) {
    const std::uint64_t eight = eightDigits(static_cast<std::uint32_t>(number)) >> 8 * (8 - count);
    const int whole = count - width;
    storePacked(out, eight);
    out[whole] = separator;
    storePacked(out + whole + 1, eight >> 8 * whole);
    return out + count + 1;
  }
  printDigits(number, count, out);
  unsigned char* const fraction = out + count - width;
  unsigned char digits[kMaxDecimalDigits];
  std::memcpy(digits, fraction, sizeof digits);
  *fraction = separator;
  std::memcpy(fraction + 1, digits, sizeof digits);
  return out + count + 1;
}

}  // namespace

bool TemplatePrinter::takeField(ByteReader& reader, const TemplatePiece& piece, std::size_t rows,
                                Step& step) {
  if (piece.kind == PieceKind::text) {
    TextColumn& column = m_texts.emplace_back();
    step.texts = &column;
    if (!readNestedTexts(reader, rows, TextLevel::field, column.texts)) {
      return false;
    }
    column.step = column.texts.offsets.size() == 1 ? 0 : 1;
    column.endOfBytes = column.texts.bytes.data() + column.texts.bytes.size();
    column.findValues();
    return true;
  }
  if (piece.kind == PieceKind::moment && !step.moment.compile(piece.bytes)) {
    return false;
  }
  step.numbers = &m_numbers.emplace_back();
  return step.numbers->take(reader, rows, largestNumber(piece));
}

bool TemplatePrinter::takeColumns(ByteReader& reader, std::size_t rows) {
  // Digits are at most 19 with a separator, moments 32.
  constexpr std::size_t kLongestField = 40;
  for (const TemplatePiece& piece : m_template.pieces) {
    Step& step = m_steps.emplace_back();
    step.kind = piece.kind;
    step.width = piece.width;
    if (piece.kind == PieceKind::fixed) {
      step.width = static_cast<int>(piece.bytes.size());
      step.fixed = piece.bytes;
      step.fixed.resize(step.fixed.size() + 16);
      m_maxPrinted += piece.bytes.size();
      continue;
    }
    if (piece.kind == PieceKind::decimal) {
      step.separator = static_cast<unsigned char>(piece.bytes[0]);
    }
    if (!takeField(reader, piece, rows, step)) {
      return false;
    }
    m_maxPrinted += kLongestField;
    const std::uint64_t values = valueCount(step);
    const bool areFew = values <= kMaxCombinations && m_combinationCount <= kMaxCombinations;
    m_combinationCount = areFew ? m_combinationCount * values : 0;
  }
  if (m_combinationCount > kMaxCombinations) {
    m_combinationCount = 0;
  }
  return true;
}

// Where all texts together are short, they are few, or one is many times in the column.
void TemplatePrinter::TextColumn::findValues() {
  constexpr std::size_t kMaxBytes = 1 << 12;
  constexpr std::uint16_t kUnknown = 0xFFFF;
  if (texts.bytes.size() > kMaxBytes) {
    return;
  }
  indices.assign(texts.bytes.size(), kUnknown);
  for (const std::uint32_t offset : texts.offsets) {
    if (indices[offset] == kUnknown) {
      indices[offset] = static_cast<std::uint16_t>(values.size());
      values.push_back(offset);
    }
  }
}

bool TemplatePrinter::TextColumn::addIndices(std::size_t factor,
                                             std::span<std::uint32_t> combinations) {
  if (step == 0) {
    return true;  // the index is 0
  }
  if (combinations.size() > texts.offsets.size() - next) {
    return false;
  }
  for (std::uint32_t& combination : combinations) {
    combination += static_cast<std::uint32_t>(indices[texts.offsets[next++]] * factor);
  }
  return true;
}

// How many values the field has; 0 where they are unknown.
std::uint64_t TemplatePrinter::valueCount(const Step& step) {
  return step.numbers != nullptr ? step.numbers->valueCount() : step.texts->values.size();
}

// Each index of a value times the factor.
bool TemplatePrinter::addIndices(Step& step, std::size_t factor,
                                 std::span<std::uint32_t> combinations) {
  if (step.texts != nullptr) {
    return step.texts->addIndices(factor, combinations);
  }
  while (!combinations.empty()) {
    const auto indices = step.numbers->nextIndices();
    if (indices.empty() || indices.size() > combinations.size()) {
      return false;
    }
    for (std::size_t i = 0; i < indices.size(); ++i) {
      combinations[i] += static_cast<std::uint32_t>(indices[i] * factor);
    }
    combinations = combinations.subspan(indices.size());
  }
  return true;
}

bool TemplatePrinter::takeCombinations(std::span<std::uint32_t> combinations) {
  std::fill(combinations.begin(), combinations.end(), 0);
  std::size_t factor = 1;
  for (Step& step : m_steps) {
    if (step.kind == PieceKind::fixed) {
      continue;
    }
    if (!addIndices(step, factor, combinations)) {
      return false;
    }
    factor *= valueCount(step);
  }
  return true;
}

unsigned char* TemplatePrinter::printCombination(std::uint32_t combination, unsigned char* out,
                                                 const unsigned char* end) {
  for (Step& step : m_steps) {
    if (step.kind != PieceKind::fixed) {
      const auto values = static_cast<std::uint32_t>(valueCount(step));
      const std::uint32_t index = combination % values;
      combination /= values;
      step.current =
          step.numbers != nullptr ? step.numbers->valueOf(index) : step.texts->values[index];
    }
  }
  return printFields(out, end);
}

// The field's value in the next text.
bool TemplatePrinter::takeNext(Step& step) {
  if (step.numbers != nullptr) {
    if (!step.numbers->hasNext()) {
      return false;
    }
    step.current = step.numbers->number();
  } else if (step.texts != nullptr) {
    step.current = step.texts->texts.offsets[step.texts->next];
    step.texts->next += step.texts->step;
  }
  return true;
}

unsigned char* TemplatePrinter::printNumber(Step& step, unsigned char* out) {
  const std::uint64_t number = step.current;
  switch (step.kind) {
    case PieceKind::digits:
      printDigits(number, step.width, out);
      return out + step.width;
    case PieceKind::number:
      return printShortest(number, out);
    case PieceKind::varyingDigits:
      return printVaryingDigits(number, out);
    case PieceKind::lowerHex:
      printHex(number, step.width, kLowerLetterOffset, out);
      return out + step.width;
    case PieceKind::upperHex:
      printHex(number, step.width, kUpperLetterOffset, out);
      return out + step.width;
    case PieceKind::decimal:
      return printDecimal(number, step.width, step.separator, out);
    default:
      step.moment.print(number, out);
      return out + step.moment.size();
  }
}

unsigned char* TemplatePrinter::printCurrent(Step& step, unsigned char* out,
                                             const unsigned char* end) {
  if (step.kind == PieceKind::fixed) {
    copyShort(asBytes(step.fixed).data(), static_cast<std::size_t>(step.width), out);
    return out + step.width;
  }
  if (step.kind != PieceKind::text) {
    return printNumber(step, out);
  }
  const unsigned char* text = step.texts->texts.bytes.data() + step.current;
  const auto size = loadPacked<std::uint32_t>(text);
  if (out > end || size > static_cast<std::size_t>(end - out)) {
    return nullptr;
  }
  text += sizeof size;
  if (size <= kShortText && step.texts->endOfBytes - text >= std::ptrdiff_t{kShortText})
      [[likely]] {
    std::memcpy(out, text, kShortText);
  } else {
    std::memcpy(out, text, size);
  }
  return out + size;
}

bool TemplatePrinter::takeFields(bool& isSame) {
  isSame = true;
  for (Step& step : m_steps) {
    const std::uint64_t before = step.current;
    if (!takeNext(step)) {
      return false;
    }
    isSame &= step.current == before;
  }
  return true;
}

unsigned char* TemplatePrinter::printFields(unsigned char* out, const unsigned char* end) {
  for (Step& step : m_steps) {
    out = printCurrent(step, out, end);
    if (out == nullptr) {
      return nullptr;
    }
  }
  return out;
}

}  // namespace kelvarin
