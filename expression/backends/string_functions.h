// Registers the function table with a muParserX parser: one callback class for every line.
#pragma once

#include "expression/backends/string_library.h"
#include "expression/functions/function_line.h"

namespace kelvarin {

// Throws what the library throws. `context` outlives the parser.
void addFunctions(StringLibrary& parser, FunctionContext& context);

}  // namespace kelvarin
