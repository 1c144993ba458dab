// The text of an expression -> its tokens.
//
// Every character is in one token, so that an editor can draw what it gets, and a text that is not
// finished has tokens, too. What may follow what is the engines' business.
#pragma once

#include <cstddef>
#include <string_view>

#include "expression/tokens/token.h"

namespace kelvarin {

// For UTF-16 (char16_t) and Latin-1 (char). The tokens refer to no memory of the text.
template <typename Character>
Tokens tokensOf(std::basic_string_view<Character> expression);

// `=`, `+=` and their like.
bool isAssignment(const Token& token);
bool isComparison(const Token& token);

inline constexpr std::size_t kNoToken = static_cast<std::size_t>(-1);

// The indices of the neighbours that are no blanks, else kNoToken.
std::size_t tokenBefore(const Tokens& tokens, std::size_t index);
std::size_t tokenAfter(const Tokens& tokens, std::size_t index);

// A name that is no tail of a number, as the `k` of `3k` is.
bool isFreeName(const Tokens& tokens, std::size_t index);
// A free name in front of an opening round bracket.
bool isCall(const Tokens& tokens, std::size_t index);

// The index of the bracket that belongs to the one at `index`; kNoToken where there is none, or
// another kind of bracket is in the way.
std::size_t partnerOf(const Tokens& tokens, std::size_t index);

}  // namespace kelvarin
