// The casts and bit operators of the String back-end on numbers, in place of the library's, which
// know neither null nor large numbers.
//
// Errors: throws the library's exceptions; string_backend.cpp catches them.
#pragma once

#include <mpParser.h>

namespace kelvarin {

void addBitOperators(mup::ParserX& parser);

}  // namespace kelvarin
