// A piece of the text of an expression, as every engine cuts it.
//
// Made by tokenizer.h; read by whatever looks into an expression: the native compiler, the
// preparations of the back-ends, warnings, hints and editors.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kelvarin {

enum class TokenKind {
  name,
  number,
  text,  // with its quotes
  operatorSign,
  unit,  // behind a value, with its braces
  opening,
  closing,
  separator,
  blank,
  comment,  // to the end of the expression
  unknown   // a character that no engine takes
};

// Why a text literal is none that an engine reads.
enum class TokenFault { none, unclosed, unknownEscape };

struct Token {
  TokenKind kind = TokenKind::unknown;
  std::size_t start = 0;  // in characters of the expression: 16-bit units for a QString
  std::size_t size = 0;
  std::string_view sign = {};  // the spelling of operators, units, brackets and separators
  TokenFault fault = TokenFault::none;

  std::size_t end() const { return start + size; }
};

// They cover the expression without gaps, in its order.
using Tokens = std::vector<Token>;

}  // namespace kelvarin
