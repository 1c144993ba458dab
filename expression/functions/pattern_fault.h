// Why the library for regular expressions refuses a pattern, and where.
//
// Part of TextPattern.
#pragma once

#include <optional>
#include <string_view>

#include <re2/re2.h>

#include "expression/functions/text_pattern.h"

namespace kelvarin {

// In which every pattern is compiled: silent, and with 8 MiB for the program and what searching
// learns about it.
re2::RE2::Options boundedOptions();

PatternFault faultOfWhole(std::string_view pattern, const QString& reason);
// The first `\C`, which the library would take.
std::optional<PatternFault> singleByteIn(std::string_view pattern);
// Of a pattern that was refused.
PatternFault faultOf(const re2::RE2& refused, std::string_view pattern);

}  // namespace kelvarin
