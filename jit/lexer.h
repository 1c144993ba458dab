// Expression text -> tokens: numbers, names, units in braces, operators.
//
// Used by parser.cpp. A token's text is a view of the expression, which outlives it.
// Errors: a token of kind `invalid` whose failure says why; nothing follows it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "jit/compile_failure.h"

namespace kelvarin::jit {

enum class TokenKind : std::uint8_t {
  end,
  invalid,
  number,
  name,
  unit,
  plus,
  minus,
  times,
  over,
  remainder,
  power,
  less,
  lessOrEqual,
  greater,
  greaterOrEqual,
  equal,
  notEqual,
  both,
  either,
  assign,
  question,
  colon,
  comma,
  open,
  close
};

struct Token {
  TokenKind kind = TokenKind::end;
  std::size_t position = 0;
  std::string_view text;
  double number = 0.0;  // of a number; the factor of a unit
};

class Lexer {
 public:
  explicit Lexer(std::string_view expression) : m_expression(expression) {}

  Token next();
  // True when the next character is an opening bracket, with no blank before it.
  bool isAtBracket() const;
  const CompileFailure& failure() const { return m_failure; }

 private:
  void skipBlanks();
  Token take(TokenKind kind, std::size_t length);
  Token refuse(CompileStatus status, std::string reason);
  Token takeNumber();
  Token takeHexadecimal();
  Token takeName();
  Token takeUnit();
  Token takeOperator();
  bool isDigitAt(std::size_t position) const;
  std::size_t endOfDigits(std::size_t position) const;

  std::string_view m_expression;
  std::size_t m_position = 0;
  CompileFailure m_failure;
};

}  // namespace kelvarin::jit
