// Registers the function table with a muParserX parser: one callback class for every line.
#pragma once

#include <mpParser.h>

#include "expression/functions/function_line.h"

namespace kelvarin {

// Throws what the library throws. `context` outlives the parser.
void addFunctions(mup::ParserX& parser, FunctionContext& context);

}  // namespace kelvarin
