// What the Fast back-end's library lacks of the language, or computes in a way of its own: `^`,
// `%`, signs, units, casts and bit operators, hexadecimal numbers.
#pragma once

#include <muParser.h>

namespace kelvarin {

// Throws what the library throws.
void addLanguage(mu::Parser& parser);

}  // namespace kelvarin
