// Registers the function table with a muParser parser.
#pragma once

#include <memory>
#include <vector>

#include <muParser.h>

#include "expression/functions/function_line.h"

namespace kelvarin {

// A body with its memory; outlives the parser it was registered with.
struct BoundFunction {
  FunctionContext* context;
  const FunctionLine* line;
};
using BoundFunctions = std::vector<std::unique_ptr<BoundFunction>>;

// Throws what the library throws.
BoundFunctions addFunctions(mu::Parser& parser, FunctionContext& context);

}  // namespace kelvarin
