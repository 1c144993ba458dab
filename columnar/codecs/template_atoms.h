// What the texts of one shape have at one position, while templates are being inferred.
//
// Used by word_atoms.cpp, which makes atoms of words, and by shape_inference.cpp, which makes
// templates of atoms.
#pragma once

#include <algorithm>
#include <vector>

#include "columnar/codecs/text_template.h"

namespace kelvarin {

struct TemplateAtom {
  TemplatePiece piece;
  // In the texts of the sample, the bytes at this position. They are contiguous with those of the
  // neighbours.
  std::vector<Bytes> values;
  // The number of digits that all values have and nothing else; 0 where they do not.
  std::size_t digitWidth = 0;

  TemplateAtom(TemplatePiece atomPiece, std::vector<Bytes> atomValues)
      : piece(std::move(atomPiece)), values(std::move(atomValues)), digitWidth(commonDigits()) {}

  bool isFixed(char character) const {
    return piece.kind == PieceKind::fixed && piece.bytes.size() == 1 && piece.bytes[0] == character;
  }

 private:
  std::size_t commonDigits() const {
    const std::size_t width = values[0].size();
    const bool areDigits = std::all_of(values.begin(), values.end(), [width](Bytes value) {
      return value.size() == width &&
             std::all_of(value.begin(), value.end(), [](unsigned char c) { return isDigit(c); });
    });
    return areDigits ? width : 0;
  }
};

using TemplateAtoms = std::vector<TemplateAtom>;

// Replaces digits that are dates or times of day in nearly all texts by moments.
void mergeMoments(TemplateAtoms& atoms);
// Replaces a number, a separator and digits of a fixed width by a decimal.
void mergeDecimals(TemplateAtoms& atoms);

}  // namespace kelvarin
