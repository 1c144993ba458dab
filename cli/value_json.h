// JSON and plain forms of values, as the program prints them.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "cli/expression_run.h"

namespace kelvarin {

// Members keep the order in which they were added.
using Json = nlohmann::ordered_json;

// A JSON number or string; null for a missing value. Numbers that JSON lacks are the words nan, inf
// and -inf, and set `isSpecial`.
Json jsonOf(const ExpressionResult& result, bool& isSpecial);
// In the shortest form that reads back; a missing value is the word null.
QString plainText(const ExpressionResult& result);
Json jsonOf(const QStringList& texts);
const char* typeWord(MetaTypeColumn type);

// Two spaces of indentation; text that is not valid Unicode is repaired rather than refused.
std::string printed(const Json& document);

}  // namespace kelvarin
