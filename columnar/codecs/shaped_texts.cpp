#include "columnar/codecs/shaped_texts.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "columnar/codecs/chosen_texts.h"
#include "columnar/codecs/text_comparison.h"
#include "columnar/codecs/text_limits.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

namespace {

bool hasOneSize(const PieceValues& piece) {
  return piece.isFixed() || piece.step == 0 || (!piece.hasTexts() && piece.printer.hasFixedWidth());
}

// 0 where they differ.
std::uint64_t sizeOfEach(const std::vector<PieceValues>& pieces) {
  std::uint64_t size = kLengthSize;
  for (const PieceValues& piece : pieces) {
    if (!hasOneSize(piece)) {
      return 0;
    }
    size += piece.sizeOf(0);
  }
  return size;
}

std::size_t bytesOf(const DecodedTexts& texts) {
  return texts.bytes.size() + texts.offsets.size() * sizeof(std::uint32_t);
}

}  // namespace

std::size_t PieceValues::sizeOf(std::size_t index) const {
  if (isFixed()) {
    return printer.fixedSize();
  }
  return hasTexts() ? loadPacked<std::uint32_t>(text(index)) : printer.sizeOf(number(index));
}

ShapedTexts::ShapedTexts(std::vector<std::vector<PieceValues>> templates,
                         std::vector<std::uint8_t> numbers, DecodedTexts others)
    : m_templates(std::move(templates)),
      m_numbers(std::move(numbers)),
      m_others(std::move(others)),
      m_byteCount(m_numbers.size() + bytesOf(m_others)) {
  if (m_numbers.size() > 1) {
    std::array<std::uint32_t, 256> next{};
    m_indices.resize(m_numbers.size());
    for (std::size_t row = 0; row < m_numbers.size(); ++row) {
      m_indices[row] = next[m_numbers[row]]++;
    }
    m_byteCount += m_indices.size() * sizeof(std::uint32_t);
  } else if (m_numbers[0] < m_templates.size()) {
    m_sizeOfEach = sizeOfEach(m_templates[m_numbers[0]]);
  }
  for (const std::vector<PieceValues>& pieces : m_templates) {
    for (const PieceValues& piece : pieces) {
      m_byteCount += bytesOf(piece.texts);
    }
  }
}

// Calls use(first, end, indices of the texts of each template) for as many of the rows as a batch
// may have.
template <typename Use>
void ShapedTexts::forEachBatch(const Rows& rows, Use use) const {
  std::vector<TextIndices> indices(m_templates.size());
  for (std::size_t first = 0; first < rows.count; first += TemplateBatch::kMaxRows) {
    const std::size_t end = std::min(first + TemplateBatch::kMaxRows, rows.count);
    for (TextIndices& each : indices) {
      each.count = 0;
    }
    for (std::size_t i = first; i < end; ++i) {
      const std::size_t row = rows.first + rows.offset(i);
      if (const std::size_t number = numberOf(row); number < indices.size()) {
        TextIndices& chosen = indices[number];
        chosen.values[chosen.count++] = static_cast<std::uint32_t>(indexOf(row));
      }
    }
    use(first, end, std::span<const TextIndices>(indices));
  }
}

std::uint64_t ShapedTexts::sizeOf(const Rows& rows) const {
  if (m_sizeOfEach != 0) {
    return m_sizeOfEach * rows.count;
  }
  std::uint64_t size = rows.count * kLengthSize;
  forEachBatch(rows, [&](std::size_t first, std::size_t end, std::span<const TextIndices> indices) {
    for (std::size_t i = 0; i < indices.size(); ++i) {
      size += ChosenTexts::sizeOf(m_templates[i], indices[i].all());
    }
    if (m_others.offsets.empty()) {
      return;
    }
    for (std::size_t i = first; i < end; ++i) {
      if (const std::size_t row = rows.first + rows.offset(i); numberOf(row) > nullNumber()) {
        size += loadPacked<std::uint32_t>(otherOf(row));
      }
    }
  });
  return size;
}

void ShapedTexts::make(const Rows& rows, unsigned char* bytes, std::uint32_t* positions) const {
  std::vector<ChosenTexts> templates;
  templates.reserve(m_templates.size());
  for (const std::vector<PieceValues>& pieces : m_templates) {
    templates.emplace_back(pieces, rows.count);
  }
  unsigned char* out = bytes;
  forEachBatch(rows, [&](std::size_t first, std::size_t end, std::span<const TextIndices> indices) {
    for (std::size_t i = 0; i < templates.size(); ++i) {
      templates[i].choose(indices[i].all());
    }
    for (std::size_t i = first; i < end; ++i) {
      const std::size_t row = rows.first + rows.offset(i);
      const std::size_t number = numberOf(row);
      positions[rows.offset(i)] = static_cast<std::uint32_t>(out - bytes);
      unsigned char* const text = out + kLengthSize;
      if (number < templates.size()) {
        unsigned char* const textEnd = templates[number].printNext(text);
        storePacked(out, static_cast<std::uint32_t>(textEnd - text));
        out = textEnd;
      } else if (number == nullNumber()) {
        storePacked(out, kNullLength);
        out = text;
      } else {
        const unsigned char* const other = otherOf(row);
        const std::size_t size = kLengthSize + loadPacked<std::uint32_t>(other);
        std::memcpy(out, other, size);
        out += size;
      }
    }
  });
}

void ShapedTexts::compare(std::string_view bytes, bool isEqualityOnly, std::int8_t ofNull,
                          const Rows& rows, std::int8_t* orders) const {
  std::vector<TextComparison> comparisons;
  comparisons.reserve(m_templates.size());
  for (const std::vector<PieceValues>& pieces : m_templates) {
    comparisons.emplace_back(pieces, bytes, isEqualityOnly);
  }
  for (std::size_t i = 0; i < rows.count; ++i) {
    const std::size_t row = rows.first + rows.offset(i);
    const std::size_t number = numberOf(row);
    if (number < nullNumber()) [[likely]] {
      orders[i] = comparisons[number].orderOf(indexOf(row));
    } else if (number == nullNumber()) {
      orders[i] = ofNull;
    } else {
      const unsigned char* other = otherOf(row);
      orders[i] = orderOf(
          {reinterpret_cast<const char*>(other) + kLengthSize, loadPacked<std::uint32_t>(other)},
          bytes);
    }
  }
}

}  // namespace kelvarin
