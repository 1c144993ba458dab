#include "columnar/codecs/chosen_texts.h"

#include <algorithm>
#include <numeric>

namespace kelvarin {

namespace {

using Numbers = std::array<std::uint64_t, TemplateBatch::kMaxRows>;

// The numbers of the texts in a field, where they are or collected in the memory.
std::span<const std::uint64_t> numbersOf(const PieceValues& piece,
                                         std::span<const std::uint32_t> indices, Numbers& memory) {
  if (!indices.empty() && piece.step == 1 &&
      indices.back() - indices.front() + std::size_t{1} == indices.size() &&
      std::is_sorted(indices.begin(), indices.end())) {
    return {piece.numbers.get() + indices.front(), indices.size()};
  }
  std::transform(indices.begin(), indices.end(), memory.begin(),
                 [&](std::uint32_t index) { return piece.number(index); });
  return {memory.data(), indices.size()};
}

}  // namespace

ChosenTexts::ChosenTexts(const std::vector<PieceValues>& pieces, std::size_t maxRows)
    : m_pieces(pieces) {
  for (const PieceValues& piece : pieces) {
    if (piece.hasTexts()) {
      m_batch.addTexts(piece.texts.bytes.data());
    } else if (piece.isFixed()) {
      m_batch.addFixed(piece.printer.fixedBytes());
    } else {
      m_batch.addNumbers(piece.printer, piece.largest);
    }
  }
  m_batch.finish(maxRows);
  m_offsets.resize(pieces.size() * TemplateBatch::kMaxRows);
}

std::uint64_t ChosenTexts::sizeOf(const std::vector<PieceValues>& pieces,
                                  std::span<const std::uint32_t> indices) {
  Numbers memory;
  std::uint64_t size = 0;
  for (const PieceValues& piece : pieces) {
    if (piece.hasTexts()) {
      size = std::accumulate(indices.begin(), indices.end(), size,
                             [&](std::uint64_t sum, std::uint32_t index) {
                               return sum + loadPacked<std::uint32_t>(piece.text(index));
                             });
    } else if (piece.isFixed()) {
      size += indices.size() * piece.printer.fixedSize();
    } else {
      size += piece.printer.sizeOfAll(numbersOf(piece, indices, memory), piece.largest);
    }
  }
  return size;
}

void ChosenTexts::choose(std::span<const std::uint32_t> indices) {
  Numbers memory;
  std::size_t field = 0;
  m_next = 0;
  for (const PieceValues& piece : m_pieces) {
    if (piece.hasTexts()) {
      std::uint32_t* const offsets = m_offsets.data() + field * TemplateBatch::kMaxRows;
      std::transform(indices.begin(), indices.end(), offsets,
                     [&](std::uint32_t index) { return piece.texts.offsets[index * piece.step]; });
      m_batch.setTexts(field++, offsets, 1);
    } else if (!piece.isFixed()) {
      m_batch.setNumbers(field++, numbersOf(piece, indices, memory));
    }
  }
}

}  // namespace kelvarin
