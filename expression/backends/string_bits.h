// The casts and bit operators of the String back-end on numbers, in place of the library's, which
// know neither null nor large numbers.
//
// Errors: throws the library's exceptions; string_backend.cpp catches them.
#pragma once

#include <mpParser.h>

#include "expression/backends/string_limits.h"

namespace kelvarin {

// `limits` outlives the parser's operators.
void addBitOperators(mup::ParserX& parser, EvaluationLimits& limits);

}  // namespace kelvarin
