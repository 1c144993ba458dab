// The operators of the String back-end on numbers: the operations of the other back-ends, bit for
// bit, with their priorities.
//
// Texts and arrays keep the library's operators.
// Errors: throws the library's exceptions; string_backend.cpp catches them.
#pragma once

#include <mpParser.h>

#include "expression/backends/string_limits.h"

namespace kelvarin {

// Replaces the library's operators. Throws what the library throws. `limits` outlives the parser's
// operators.
void addOperators(mup::ParserX& parser, EvaluationLimits& limits);

}  // namespace kelvarin
