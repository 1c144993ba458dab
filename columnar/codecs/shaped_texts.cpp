#include "columnar/codecs/shaped_texts.h"

#include <algorithm>
#include <array>
#include <cstdint>

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

// Prints chosen texts of a template, a batch at a time.
class ChosenTexts {
 public:
  ChosenTexts(const std::vector<PieceValues>& pieces, std::size_t rows) : m_pieces(pieces) {
    for (const PieceValues& piece : pieces) {
      if (piece.hasTexts()) {
        m_batch.addTexts(piece.texts.bytes.data());
      } else if (piece.isFixed()) {
        m_batch.addFixed(piece.printer.fixedBytes());
      } else {
        m_batch.addNumbers(piece.printer, piece.largest);
      }
    }
    m_batch.finish(rows);
  }

  // The next texts are those with these indices, up to TemplateBatch::kMaxRows.
  void choose(std::span<const std::uint32_t> indices) {
    m_next = 0;
    m_offsets.resize(m_pieces.size() * TemplateBatch::kMaxRows);
    std::size_t field = 0;
    for (const PieceValues& piece : m_pieces) {
      if (piece.hasTexts()) {
        std::uint32_t* const offsets = m_offsets.data() + field * TemplateBatch::kMaxRows;
        std::transform(indices.begin(), indices.end(), offsets, [&](std::uint32_t index) {
          return piece.texts.offsets[index * piece.step];
        });
        m_batch.setTexts(field++, offsets, 1);
      } else if (!piece.isFixed()) {
        std::array<std::uint64_t, TemplateBatch::kMaxRows> numbers;
        std::transform(indices.begin(), indices.end(), numbers.begin(),
                       [&](std::uint32_t index) { return piece.number(index); });
        m_batch.setNumbers(field++, {numbers.data(), indices.size()});
      }
    }
  }
  // Texts are as long as their pieces, whose sizes have been added up.
  unsigned char* printNext(unsigned char* out) { return m_batch.print(m_next++, out, nullptr); }

 private:
  const std::vector<PieceValues>& m_pieces;
  TemplateBatch m_batch;
  std::size_t m_next = 0;
  std::vector<std::uint32_t> m_offsets;  // of the chosen texts, field after field
};

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

std::size_t ShapedTexts::sizeOf(std::size_t row) const {
  const std::size_t number = numberOf(row);
  const std::size_t index = indexOf(row);
  if (number == nullNumber()) {
    return kLengthSize;
  }
  if (number > nullNumber()) {
    return kLengthSize + loadPacked<std::uint32_t>(otherOf(row));
  }
  std::size_t size = kLengthSize;
  for (const PieceValues& piece : m_templates[number]) {
    size += piece.sizeOf(index);
  }
  return size;
}

std::uint64_t ShapedTexts::sizeOf(const Rows& rows) const {
  if (m_sizeOfEach != 0) {
    return m_sizeOfEach * rows.count;
  }
  std::uint64_t size = 0;
  for (std::size_t i = 0; i < rows.count; ++i) {
    size += sizeOf(rows.first + rows.offset(i));
  }
  return size;
}

unsigned char* ShapedTexts::copyOther(std::size_t row, unsigned char* out) const {
  const unsigned char* other = otherOf(row);
  const std::size_t size = kLengthSize + loadPacked<std::uint32_t>(other);
  std::memcpy(out, other, size);
  return out + size;
}

void ShapedTexts::make(const Rows& rows, unsigned char* bytes, std::uint32_t* positions) const {
  std::vector<ChosenTexts> templates;
  templates.reserve(m_templates.size());
  for (const std::vector<PieceValues>& pieces : m_templates) {
    templates.emplace_back(pieces, rows.count);
  }
  std::vector<std::array<std::uint32_t, TemplateBatch::kMaxRows>> indices(templates.size());
  std::vector<std::size_t> counts(templates.size());
  unsigned char* out = bytes;
  for (std::size_t first = 0; first < rows.count; first += TemplateBatch::kMaxRows) {
    const std::size_t end = std::min(first + TemplateBatch::kMaxRows, rows.count);
    std::fill(counts.begin(), counts.end(), 0);
    for (std::size_t i = first; i < end; ++i) {
      const std::size_t row = rows.first + rows.offset(i);
      if (const std::size_t number = numberOf(row); number < templates.size()) {
        indices[number][counts[number]++] = static_cast<std::uint32_t>(indexOf(row));
      }
    }
    for (std::size_t i = 0; i < templates.size(); ++i) {
      templates[i].choose(std::span(indices[i]).first(counts[i]));
    }
    for (std::size_t i = first; i < end; ++i) {
      const std::size_t row = rows.first + rows.offset(i);
      const std::size_t number = numberOf(row);
      positions[rows.offset(i)] = static_cast<std::uint32_t>(out - bytes);
      if (number < templates.size()) {
        unsigned char* const text = out + kLengthSize;
        unsigned char* const textEnd = templates[number].printNext(text);
        storePacked(out, static_cast<std::uint32_t>(textEnd - text));
        out = textEnd;
      } else if (number == nullNumber()) {
        storePacked(out, kNullLength);
        out += kLengthSize;
      } else {
        out = copyOther(row, out);
      }
    }
  }
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
