// What the words at one position of several texts have in common, as atoms of a template: the same
// bytes, digits, hexadecimal digits, runs of digits and letters.
//
// Used by shape_inference.cpp.
#pragma once

#include <string>
#include <vector>

#include "columnar/codecs/template_atoms.h"

namespace kelvarin {

// Words of the same kind have the same runs of digits and letters, or are hexadecimal digits of the
// same number and case.
std::string kindOfWord(Bytes word);

// Adds the atoms of at least one word. False, and nothing is added, when the words have no form in
// common.
[[nodiscard]] bool addAlikeWords(const std::vector<Bytes>& words, TemplateAtoms& atoms);
// Adds words of any form, as one field.
void addDifferentWords(std::vector<Bytes> words, TemplateAtoms& atoms);
// Adds the ends of texts, whatever they are.
void addTails(const std::vector<Bytes>& tails, TemplateAtoms& atoms);

}  // namespace kelvarin
