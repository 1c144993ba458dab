// JSON and plain forms of values, as the program prints them.
#pragma once

#include "cli/expression_run.h"
#include "host/reports/run_json.h"

namespace kelvarin {

// A JSON number or string; null for a missing value. Numbers that JSON lacks are the words nan, inf
// and -inf, and set `isSpecial`.
Json jsonOf(const ExpressionResult& result, bool& isSpecial);
// In the shortest form that reads back; a missing value is the word null.
QString plainText(const ExpressionResult& result);
const char* typeWord(MetaTypeColumn type);

}  // namespace kelvarin
