#include "jit/lexer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <utility>

#include "expression/tokens/units.h"
#include "jit/messages.h"

namespace kelvarin::jit {

namespace {

constexpr std::size_t kMaximumNameLength = 100;

struct Sign {
  std::string_view text;
  TokenKind kind;
};

// What the compiler knows of the language's signs.
constexpr std::array kSigns = {
    Sign{"<=", TokenKind::lessOrEqual}, Sign{">=", TokenKind::greaterOrEqual},
    Sign{"==", TokenKind::equal},       Sign{"!=", TokenKind::notEqual},
    Sign{"&&", TokenKind::both},        Sign{"||", TokenKind::either},
    Sign{"<", TokenKind::less},         Sign{">", TokenKind::greater},
    Sign{"=", TokenKind::assign},       Sign{"+", TokenKind::plus},
    Sign{"-", TokenKind::minus},        Sign{"*", TokenKind::times},
    Sign{"/", TokenKind::over},         Sign{"%", TokenKind::remainder},
    Sign{"^", TokenKind::power},        Sign{"?", TokenKind::question},
    Sign{":", TokenKind::colon},        Sign{",", TokenKind::comma},
    Sign{"(", TokenKind::open},         Sign{")", TokenKind::close}};

const Unit* unitSpelt(std::string_view text) {
  const auto found = std::find_if(kUnits.begin(), kUnits.end(),
                                  [&](const Unit& unit) { return unit.text == text; });
  return found == kUnits.end() ? nullptr : &*found;
}

// Hexadecimal numbers have at most 32 bits.
std::from_chars_result read(std::string_view text, double& number) {
  const char* end = text.data() + text.size();
  if (!text.starts_with("0x")) {
    return std::from_chars(text.data(), end, number);
  }
  constexpr int kBase = 16;
  std::uint32_t whole = 0;
  const auto result = std::from_chars(text.data() + 2, end, whole, kBase);
  number = whole;
  return result;
}

}  // namespace

Token Lexer::next() {
  while (m_next < m_tokens.size() && m_tokens[m_next].kind == kelvarin::TokenKind::blank) {
    ++m_next;
  }
  if (m_next == m_tokens.size()) {
    return {TokenKind::end, m_expression.size(), {}};
  }
  const kelvarin::Token& token = m_tokens[m_next++];
  switch (token.kind) {
    case kelvarin::TokenKind::number:
      return numberOf(token);
    case kelvarin::TokenKind::name:
      return nameOf(token);
    case kelvarin::TokenKind::unit:
      return unitOf(token);
    case kelvarin::TokenKind::text:
      return refuse(token, CompileStatus::unsupported, messages::textInExpression());
    default:
      return signOf(token);
  }
}

bool Lexer::isAtBracket() const {
  return m_next < m_tokens.size() && m_tokens[m_next].sign == "(";
}

Token Lexer::numberOf(const kelvarin::Token& token) {
  const std::string_view text = textOf(token);
  Token number{TokenKind::number, token.start, text};
  if (read(text, number.number).ec != std::errc()) {
    return refuse(token, CompileStatus::unsupported, messages::numberOutOfRange(text));
  }
  return number;
}

Token Lexer::nameOf(const kelvarin::Token& token) {
  if (token.size > kMaximumNameLength) {
    return refuse(token, CompileStatus::tooLarge, messages::nameTooLong(kMaximumNameLength));
  }
  return {TokenKind::name, token.start, textOf(token)};
}

Token Lexer::unitOf(const kelvarin::Token& token) {
  return {TokenKind::unit, token.start, textOf(token), unitSpelt(token.sign)->factor};
}

Token Lexer::signOf(const kelvarin::Token& token) {
  const auto found = std::find_if(kSigns.begin(), kSigns.end(),
                                  [&](const Sign& sign) { return sign.text == token.sign; });
  if (found != kSigns.end()) {
    return {found->kind, token.start, textOf(token)};
  }
  if (isAssignment(token)) {  // `+=`
    return {TokenKind::assign, token.start, textOf(token)};
  }
  if (token.sign == "{") {
    return refuseBrace(token);
  }
  return token.sign.empty()
             ? refuse(token, CompileStatus::syntaxError, messages::unexpectedCharacter())
             : refuse(token, CompileStatus::syntaxError, messages::unexpectedText(token.sign));
}

Token Lexer::refuse(const kelvarin::Token& token, CompileStatus status, std::string reason) {
  m_failure = {status, static_cast<int>(token.start), std::move(reason)};
  return {TokenKind::invalid, token.start, {}};
}

// No unit, or one that is not behind a value.
Token Lexer::refuseBrace(const kelvarin::Token& brace) {
  const std::size_t close = m_expression.find('}', brace.start);
  const std::string_view text = close == std::string_view::npos
                                    ? textOf(brace)
                                    : m_expression.substr(brace.start, close - brace.start + 1);
  return refuse(
      brace, CompileStatus::syntaxError,
      unitSpelt(text) == nullptr ? messages::unknownUnit(text) : messages::unexpectedText(text));
}

}  // namespace kelvarin::jit
