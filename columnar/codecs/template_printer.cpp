#include "columnar/codecs/template_printer.h"

#include <algorithm>

#include "columnar/codecs/nested_texts.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

namespace {

// Texts of fields that are copied as so many bytes, without a call.
constexpr std::size_t kShortText = 16;

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
  step.numbers = &m_numbers.emplace_back();
  step.largest = largestNumber(piece);
  return step.numbers->take(reader, rows, step.largest);
}

bool TemplatePrinter::takeColumns(ByteReader& reader, std::size_t rows) {
  for (const TemplatePiece& piece : m_template.pieces) {
    Step& step = m_steps.emplace_back();
    if (!step.printer.set(piece)) {
      return false;
    }
    if (!piece.isField()) {
      m_maxPrinted += piece.bytes.size();
      continue;
    }
    if (!takeField(reader, piece, rows, step)) {
      return false;
    }
    m_maxPrinted += PiecePrinter::kLongestNumber;
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
    if (!step.isField()) {
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
    if (step.isField()) {
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

unsigned char* TemplatePrinter::printCurrent(Step& step, unsigned char* out,
                                             const unsigned char* end) {
  if (!step.isField()) {
    return step.printer.printFixed(out);
  }
  if (step.numbers != nullptr) {
    return step.printer.printNumber(step.current, out);
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

std::size_t TemplatePrinter::sizeOfNumbers(std::size_t rows) const {
  const auto isStored = [](const IntegerColumn& column) { return !column.isConstant(); };
  return static_cast<std::size_t>(std::ranges::count_if(m_numbers, isStored)) * rows *
         sizeof(std::uint64_t);
}

bool TemplatePrinter::takeNumbers(Step& step, std::size_t rows, PieceValues& piece,
                                  std::uint64_t& size) {
  const bool isConstant = step.numbers->isConstant();
  const std::size_t stored = isConstant ? 1 : rows;
  piece.step = isConstant ? 0 : 1;
  piece.largest = step.largest;
  piece.numbers = std::make_unique_for_overwrite<std::uint64_t[]>(stored);
  for (std::size_t row = 0; row < stored;) {
    const auto numbers = step.numbers->nextNumbers();
    if (numbers.empty()) {
      return false;
    }
    const auto taken = numbers.first(std::min(numbers.size(), stored - row));
    std::copy(taken.begin(), taken.end(), piece.numbers.get() + row);
    row += taken.size();
  }
  if (isConstant || piece.printer.hasFixedWidth()) {
    size += rows * piece.printer.sizeOf(piece.numbers[0]);
    return true;
  }
  for (std::size_t row = 0; row < rows; ++row) {
    size += piece.printer.sizeOf(piece.numbers[row]);
  }
  return true;
}

// A null text cannot be part of another.
bool TemplatePrinter::takeTexts(Step& step, std::size_t rows, PieceValues& piece,
                                std::uint64_t& size) {
  piece.texts = std::move(step.texts->texts);
  piece.step = step.texts->step;
  piece.endOfTexts = step.texts->endOfBytes;
  const std::size_t times = piece.step == 0 ? rows : 1;
  for (const std::uint32_t offset : piece.texts.offsets) {
    const auto length = loadPacked<std::uint32_t>(piece.texts.bytes.data() + offset);
    if (length == kNullLength) {
      return false;
    }
    size += times * length;
  }
  return true;
}

bool TemplatePrinter::takeValues(std::size_t rows, std::vector<PieceValues>& pieces,
                                 std::uint64_t& size) {
  for (Step& step : m_steps) {
    PieceValues& piece = pieces.emplace_back();
    piece.printer = std::move(step.printer);
    const bool isTaken = step.numbers != nullptr ? takeNumbers(step, rows, piece, size)
                         : step.texts != nullptr ? takeTexts(step, rows, piece, size)
                                                 : true;
    if (!isTaken) {
      return false;
    }
    size += piece.isFixed() ? rows * piece.printer.fixedSize() : 0;
  }
  return true;
}

}  // namespace kelvarin
