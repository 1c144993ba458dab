// Sets the attributes that expression actions share by their names, as `kelvarin eval --opt` does.
#pragma once

#include <vector>

#include "base/result.h"
#include "cli/name_value.h"
#include "expression/evaluator/variables.h"

namespace kelvarin {

// The error names what is wrong and what there is.
Status<QString> applyExpressionOptions(const std::vector<NameValue>& values,
                                       EvaluationOptions& options);

}  // namespace kelvarin
