#include "columnar/codecs/template_printer.h"

#include <algorithm>
#include <array>

#include "columnar/codecs/nested_texts.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

bool TemplatePrinter::takeField(ByteReader& reader, const TemplatePiece& piece, std::size_t rows,
                                Step& step) {
  if (piece.kind == PieceKind::text) {
    TextColumn& column = m_texts.emplace_back();
    step.texts = &column;
    if (!readNestedTexts(reader, rows, TextLevel::field, column.texts)) {
      return false;
    }
    column.step = column.texts.offsets.size() == 1 ? 0 : 1;
    return true;
  }
  step.numbers = &m_numbers.emplace_back();
  return step.numbers->take(reader, rows, largestNumber(piece));
}

bool TemplatePrinter::takeColumns(ByteReader& reader, std::size_t rows) {
  m_remaining = rows;
  for (const TemplatePiece& piece : m_template.pieces) {
    Step& step = m_steps.emplace_back();
    if (!step.printer.set(piece)) {
      return false;
    }
    if (!piece.isField()) {
      continue;
    }
    if (!takeField(reader, piece, rows, step)) {
      return false;
    }
  }
  countCombinations();
  return true;
}

// How many values texts have takes a look at all of them, so numbers come first.
void TemplatePrinter::countCombinations() {
  m_combinationCount = 1;
  const auto multiply = [this](const Step& step) {
    const std::uint64_t values = valueCount(step);
    m_combinationCount = values <= kMaxCombinations ? m_combinationCount * values : 0;
    if (m_combinationCount > kMaxCombinations) {
      m_combinationCount = 0;
    }
  };
  for (const Step& step : m_steps) {
    if (step.numbers != nullptr) {
      multiply(step);
    }
  }
  for (const Step& step : m_steps) {
    if (step.texts != nullptr && m_combinationCount > 0) {
      step.texts->findValues();
      multiply(step);
    }
  }
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

void TemplatePrinter::addToBatch(const Step& step) {
  if (step.texts != nullptr) {
    m_batch.addTexts(step.texts->texts.bytes.data());
  } else if (step.hasNumbers()) {
    m_batch.addNumbers(step.printer, step.numbers->largest());
  } else if (step.isField()) {
    m_batch.addFixed(PrintedNumber().print(step.printer, step.numbers->valueOf(0)));
  } else {
    m_batch.addFixed(step.printer.fixedBytes());
  }
}

std::size_t TemplatePrinter::beginPrinting() {
  for (const Step& step : m_steps) {
    addToBatch(step);
  }
  m_batch.finish(m_remaining);
  return m_batch.longestText();
}

bool TemplatePrinter::loadBatch() {
  std::size_t rows = std::min(TemplateBatch::kMaxRows, m_remaining);
  for (const Step& step : m_steps) {
    if (step.hasNumbers()) {
      if (!step.numbers->hasNext()) {
        return false;
      }
      rows = std::min(rows, step.numbers->loadedCount());
    }
  }
  std::size_t field = 0;
  for (Step& step : m_steps) {
    if (step.hasNumbers()) {
      m_batch.setNumbers(field++, step.numbers->loadedNumbers(rows));
    } else if (TextColumn* column = step.texts; column != nullptr) {
      m_batch.setTexts(field++, column->texts.offsets.data() + column->next, column->step);
      column->next += column->step * rows;
    }
  }
  m_remaining -= rows;
  m_next = 0;
  m_loaded = rows;
  return rows > 0;
}

void TemplatePrinter::setNext(std::span<const std::uint32_t> combinations) {
  std::array<std::uint32_t, TemplateBatch::kMaxRows> rest;
  std::array<std::uint64_t, TemplateBatch::kMaxRows> numbers;
  std::copy(combinations.begin(), combinations.end(), rest.begin());
  const auto setEach = [&](auto& chosen, const auto& valueOf, std::uint64_t values) {
    for (std::size_t i = 0; i < combinations.size(); ++i) {
      chosen[i] = valueOf(rest[i] % static_cast<std::uint32_t>(values));
      rest[i] /= static_cast<std::uint32_t>(values);
    }
  };
  std::size_t field = 0;
  for (Step& step : m_steps) {
    if (step.hasNumbers()) {
      setEach(
          numbers, [&](std::uint32_t index) { return step.numbers->valueOf(index); },
          valueCount(step));
      m_batch.setNumbers(field++, {numbers.data(), combinations.size()});
    } else if (TextColumn* column = step.texts; column != nullptr) {
      column->chosen.resize(TemplateBatch::kMaxRows);
      setEach(
          column->chosen, [&](std::uint32_t index) { return column->values[index]; },
          valueCount(step));
      m_batch.setTexts(field++, column->chosen.data(), 1);
    }
  }
  m_next = 0;
  m_loaded = combinations.size();
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
  piece.largest = step.numbers->largest();
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
  size += piece.printer.sizeOfAll({piece.numbers.get(), rows}, piece.largest);
  return true;
}

// A null text cannot be part of another.
bool TemplatePrinter::takeTexts(Step& step, std::size_t rows, PieceValues& piece,
                                std::uint64_t& size) {
  piece.texts = std::move(step.texts->texts);
  piece.step = step.texts->step;
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
