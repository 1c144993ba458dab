#include "columnar/codecs/shaped_texts.h"

#include <array>

#include "columnar/codecs/text_comparison.h"
#include "columnar/codecs/text_limits.h"
#include "columnar/codecs/text_values.h"

namespace kelvarin {

namespace {

// Texts of fields that are copied as so many bytes, without a call.
constexpr std::size_t kShortText = 16;

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

unsigned char* PieceValues::print(std::size_t index, unsigned char* out) const {
  if (isFixed()) {
    return printer.printFixed(out);
  }
  if (!hasTexts()) {
    return printer.printNumber(number(index), out);
  }
  const unsigned char* from = text(index);
  const auto size = loadPacked<std::uint32_t>(from);
  from += kLengthSize;
  if (size <= kShortText && endOfTexts - from >= std::ptrdiff_t{kShortText}) [[likely]] {
    std::memcpy(out, from, kShortText);
  } else {
    std::memcpy(out, from, size);
  }
  return out + size;
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
    return kLengthSize +
           loadPacked<std::uint32_t>(m_others.text(m_others.offsets.size() == 1 ? 0 : index));
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

unsigned char* ShapedTexts::print(std::size_t row, unsigned char* out) const {
  unsigned char* const text = out + kLengthSize;
  const std::size_t number = numberOf(row);
  const std::size_t index = indexOf(row);
  if (number == nullNumber()) {
    storePacked(out, kNullLength);
    return text;
  }
  if (number > nullNumber()) {
    const unsigned char* other = m_others.text(m_others.offsets.size() == 1 ? 0 : index);
    const std::size_t size = kLengthSize + loadPacked<std::uint32_t>(other);
    std::memcpy(out, other, size);
    return out + size;
  }
  unsigned char* end = text;
  for (const PieceValues& piece : m_templates[number]) {
    end = piece.print(index, end);
  }
  storePacked(out, static_cast<std::uint32_t>(end - text));
  return end;
}

void ShapedTexts::make(const Rows& rows, unsigned char* bytes, std::uint32_t* positions) const {
  unsigned char* out = bytes;
  for (std::size_t i = 0; i < rows.count; ++i) {
    positions[rows.offset(i)] = static_cast<std::uint32_t>(out - bytes);
    out = print(rows.first + rows.offset(i), out);
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
      const unsigned char* other = m_others.text(m_others.offsets.size() == 1 ? 0 : indexOf(row));
      orders[i] = orderOf(
          {reinterpret_cast<const char*>(other) + kLengthSize, loadPacked<std::uint32_t>(other)},
          bytes);
    }
  }
}

}  // namespace kelvarin
