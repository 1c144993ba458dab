// Compares the texts of one template with another text, field by field and without making them.
//
// Where fields at fixed positions are printed in the order of their numbers, bounds are found once:
// numbers below the one stand for texts before the other text, numbers from the other on for texts
// behind it, and between them the next piece decides. Of all other fields the values are printed,
// one after another, up to the first one that differs.
// Used by ShapedTexts.
// Threads: read-only once it is made.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "columnar/codecs/shaped_texts.h"

namespace kelvarin {

// -1, 0 or 1, as the bytes of a text stand before, equal or stand behind others.
inline std::int8_t orderOf(std::string_view text, std::string_view other) {
  const int order = text.compare(other);
  return static_cast<std::int8_t>((order > 0) - (order < 0));
}

class TextComparison {
 public:
  // `pieces` and `other` outlive it. See ShapedTexts::compare().
  TextComparison(const std::vector<PieceValues>& pieces, std::string_view other,
                 bool isEqualityOnly);

  // Of the text with this index among those of the template.
  std::int8_t orderOf(std::size_t index) const {
    for (const Bounds& bounds : m_bounds) {
      const std::uint64_t number = bounds.piece->number(index);
      if (number < bounds.begin) {
        return -1;
      }
      if (number >= bounds.end) {
        return 1;
      }
    }
    return m_next == m_pieces.size() ? m_orderOfRest : orderOfPrinted(index);
  }

 private:
  // The numbers from `begin` to before `end` are printed as the other text has it there.
  struct Bounds {
    const PieceValues* piece = nullptr;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
  };

  [[nodiscard]] bool passPiece(const PieceValues& piece, bool isEqualityOnly);
  static Bounds boundsOf(const PieceValues& piece, std::string_view part);
  std::int8_t orderOfPrinted(std::size_t index) const;

  const std::span<const PieceValues> m_pieces;
  std::vector<Bounds> m_bounds;
  std::string_view m_rest;        // of the other text, behind the pieces that have been passed
  std::size_t m_next = 0;         // piece, of those that are printed
  std::int8_t m_orderOfRest = 0;  // where no piece is left
};

}  // namespace kelvarin
