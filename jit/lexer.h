// Expression text -> what the parser reads: numbers, names, units in braces, operators.
//
// Used by parser.cpp. The text is cut as every engine cuts it; here tokens get their meaning and
// their values. A token's text is a view of the expression, which outlives it.
// Errors: a token of kind `invalid` whose failure says why; nothing follows it.
#pragma once

#include <cstdint>
#include <string_view>

#include "expression/tokens/tokenizer.h"
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
  // In Latin-1.
  explicit Lexer(std::string_view expression)
      : m_expression(expression), m_tokens(tokensOf(expression)) {}

  Token next();
  // True when the next character is an opening bracket, with no blank before it.
  bool isAtBracket() const;
  const CompileFailure& failure() const { return m_failure; }

 private:
  std::string_view textOf(const kelvarin::Token& token) const {
    return m_expression.substr(token.start, token.size);
  }
  Token numberOf(const kelvarin::Token& token);
  Token nameOf(const kelvarin::Token& token);
  Token unitOf(const kelvarin::Token& token);
  Token signOf(const kelvarin::Token& token);
  Token refuse(const kelvarin::Token& token, CompileStatus status, std::string_view reason,
               std::string_view argument = {});
  Token refuseBrace(const kelvarin::Token& brace);

  std::string_view m_expression;
  Tokens m_tokens;
  std::size_t m_next = 0;
  CompileFailure m_failure;
};

}  // namespace kelvarin::jit
