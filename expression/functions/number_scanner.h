// Finds numbers in texts.
//
// A number is an optional sign, digits with "." as the decimal point, and an optional exponent. A
// "," is the decimal mark where it stands between digits of a number without ".". Only ASCII digits
// count; words such as nan do not.
#pragma once

#include <optional>
#include <string_view>

namespace kelvarin {

enum class NumberForm {
  real,
  whole  // sign and digits only
};

// The first number that stands anywhere in the text.
std::optional<std::string_view> findNumber(std::string_view text, NumberForm form);
// True when the text is one number, without even a blank around it.
bool isWholeTextNumber(std::string_view text, NumberForm form);
// Of digits with a minus and a point where they may be, as the standard library reads them, and
// much faster; nothing for any other text, and for digits that a double may not hold.
std::optional<double> plainDecimal(std::string_view text);
// The first number that stands anywhere in the text, as its value; null without one.
double numberIn(std::string_view text);
// Of a text that findNumber() gave. What is too large is infinite, what is too small is zero.
double valueOfNumber(std::string_view number);

}  // namespace kelvarin
