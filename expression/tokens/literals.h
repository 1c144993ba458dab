// What a name, a number and a text are in an expression: the one definition for all engines.
//
// Characters are 16-bit units of UTF-16 (char16_t) or bytes of Latin-1 (char).
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "expression/tokens/token.h"

namespace kelvarin {

constexpr bool isDigitCharacter(char16_t c) {
  return c >= u'0' && c <= u'9';
}

// Everything beyond ASCII may stand in a name.
constexpr bool isNameCharacter(char16_t c) {
  return isDigitCharacter(c) || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' ||
         c >= 0x80;
}

// A name begins with no digit.
template <typename Character>
bool isName(std::basic_string_view<Character> text);

// The sizes of the name, the number or the text literal that the text begins with; 0 where it
// begins with something else. A number is hexadecimal, `0x` and digits, or decimal with an optional
// point and exponent. An unclosed text literal goes to the end.
template <typename Character>
std::size_t sizeOfName(std::basic_string_view<Character> text);
template <typename Character>
std::size_t sizeOfNumber(std::basic_string_view<Character> text);
template <typename Character>
std::size_t sizeOfTextLiteral(std::basic_string_view<Character> text);

template <typename Character>
TokenFault faultOfTextLiteral(std::basic_string_view<Character> literal);

// What a text literal stands for: \n, \r, \t, \" and \\ are one character. Nothing for a literal
// with a fault.
template <typename Character>
std::optional<std::basic_string<Character>> textOfLiteral(
    std::basic_string_view<Character> literal);

}  // namespace kelvarin
