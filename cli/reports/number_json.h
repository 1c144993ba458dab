// Numbers of rows and expressions as JSON has them.
#pragma once

#include "host/reports/run_json.h"

namespace kelvarin {

// Null for a missing number; whole numbers have no fraction; the numbers that JSON lacks are the
// words nan, inf and -inf.
Json jsonOfNumber(double number);

}  // namespace kelvarin
