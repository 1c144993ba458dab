// Finds the templates that texts follow, from a sample of them.
//
// Texts with the same sequence of words and other characters belong together; where all words at
// one position are digits, dates or the same word, it becomes a field of that kind or a fixed
// piece. What is found need not hold for all texts: whoever uses it parses each.
// Used by ShapedTextEncoder. The result depends on the sample alone.
#pragma once

#include <span>
#include <vector>

#include "columnar/codecs/text_template.h"

namespace kelvarin {

// Templates with the most texts come first. None where too many texts follow no template.
std::vector<TextTemplate> inferTemplates(std::span<const Bytes> sample);

}  // namespace kelvarin
