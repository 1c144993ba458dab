#include "jit/lexer.h"

#include <array>
#include <charconv>
#include <string>
#include <utility>

#include "jit/messages.h"
#include "jit/units.h"

namespace kelvarin::jit {

namespace {

constexpr std::size_t kMaximumNameLength = 100;

struct Operator {
  std::string_view text;
  TokenKind kind;
};

// The longer of two operators that begin alike comes first.
constexpr std::array kOperators = {
    Operator{"<=", TokenKind::lessOrEqual}, Operator{">=", TokenKind::greaterOrEqual},
    Operator{"==", TokenKind::equal},       Operator{"!=", TokenKind::notEqual},
    Operator{"&&", TokenKind::both},        Operator{"||", TokenKind::either},
    Operator{"<", TokenKind::less},         Operator{">", TokenKind::greater},
    Operator{"=", TokenKind::assign},       Operator{"+", TokenKind::plus},
    Operator{"-", TokenKind::minus},        Operator{"*", TokenKind::times},
    Operator{"/", TokenKind::over},         Operator{"%", TokenKind::remainder},
    Operator{"^", TokenKind::power},        Operator{"?", TokenKind::question},
    Operator{":", TokenKind::colon},        Operator{",", TokenKind::comma},
    Operator{"(", TokenKind::open},         Operator{")", TokenKind::close}};

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// Letters are those of ASCII and all printable characters of Latin-1 beyond it.
bool isOfName(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0xA0;
}

}  // namespace

Token Lexer::next() {
  skipBlanks();
  if (m_position == m_expression.size()) {
    return take(TokenKind::end, 0);
  }
  const char c = m_expression[m_position];
  if (isDigit(c) || c == '.') {
    return takeNumber();
  }
  if (isOfName(c)) {
    return takeName();
  }
  if (c == '{') {
    return takeUnit();
  }
  return takeOperator();
}

bool Lexer::isAtBracket() const {
  return m_position < m_expression.size() && m_expression[m_position] == '(';
}

void Lexer::skipBlanks() {
  while (m_position < m_expression.size() && isBlank(m_expression[m_position])) {
    ++m_position;
  }
}

Token Lexer::take(TokenKind kind, std::size_t length) {
  const Token token{kind, m_position, m_expression.substr(m_position, length)};
  m_position += length;
  return token;
}

Token Lexer::refuse(CompileStatus status, std::string reason) {
  m_failure = {status, static_cast<int>(m_position), std::move(reason)};
  return take(TokenKind::invalid, 0);
}

bool Lexer::isDigitAt(std::size_t position) const {
  return position < m_expression.size() && isDigit(m_expression[position]);
}

std::size_t Lexer::endOfDigits(std::size_t position) const {
  while (isDigitAt(position)) {
    ++position;
  }
  return position;
}

// Digits with at most one point among them and at least one digit, then an optional exponent. An
// `e` that no digits follow makes the whole no number.
Token Lexer::takeNumber() {
  if (m_expression.substr(m_position, 2) == "0x") {
    return takeHexadecimal();
  }
  std::size_t end = endOfDigits(m_position);
  std::size_t digitCount = end - m_position;
  if (end < m_expression.size() && m_expression[end] == '.') {
    const std::size_t fraction = end + 1;
    end = endOfDigits(fraction);
    digitCount += end - fraction;
  }
  bool isComplete = digitCount > 0;
  if (isComplete && end < m_expression.size() && (m_expression[end] | 0x20) == 'e') {
    std::size_t exponent = end + 1;
    if (exponent < m_expression.size() &&
        (m_expression[exponent] == '+' || m_expression[exponent] == '-')) {
      ++exponent;
    }
    isComplete = isDigitAt(exponent);
    end = endOfDigits(exponent);
  }
  const std::string_view text = m_expression.substr(m_position, end - m_position);
  if (!isComplete) {
    return refuse(CompileStatus::syntaxError, messages::malformedNumber(text));
  }
  double number = 0.0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc()) {
    return refuse(CompileStatus::unsupported, messages::numberOutOfRange(text));
  }
  Token token = take(TokenKind::number, text.size());
  token.number = number;
  return token;
}

// `0x` and at least one digit; the value has at most 32 bits.
Token Lexer::takeHexadecimal() {
  constexpr std::size_t prefix = 2;
  const char* begin = m_expression.data() + m_position + prefix;
  const char* end = m_expression.data() + m_expression.size();
  std::uint32_t number = 0;
  const auto result = std::from_chars(begin, end, number, 16);
  const auto length = static_cast<std::size_t>(result.ptr - begin) + prefix;
  if (result.ec != std::errc()) {
    return refuse(CompileStatus::unsupported,
                  messages::numberOutOfRange(m_expression.substr(m_position, length)));
  }
  Token token = take(TokenKind::number, length);
  token.number = number;
  return token;
}

Token Lexer::takeName() {
  std::size_t end = m_position;
  while (end < m_expression.size() && isOfName(m_expression[end])) {
    ++end;
  }
  const std::size_t length = end - m_position;
  if (length > kMaximumNameLength) {
    return refuse(CompileStatus::tooLarge, messages::nameTooLong(kMaximumNameLength));
  }
  return take(TokenKind::name, length);
}

Token Lexer::takeUnit() {
  for (const Unit& unit : kUnits) {
    if (m_expression.substr(m_position).starts_with(unit.text)) {
      Token token = take(TokenKind::unit, unit.text.size());
      token.number = unit.factor;
      return token;
    }
  }
  const std::size_t close = m_expression.find('}', m_position);
  const std::size_t length = close == std::string_view::npos ? 1 : close - m_position + 1;
  return refuse(CompileStatus::syntaxError,
                messages::unknownUnit(m_expression.substr(m_position, length)));
}

Token Lexer::takeOperator() {
  for (const Operator& candidate : kOperators) {
    if (m_expression.substr(m_position).starts_with(candidate.text)) {
      return take(candidate.kind, candidate.text.size());
    }
  }
  if (m_expression[m_position] == '"') {
    return refuse(CompileStatus::unsupported, messages::textInExpression());
  }
  return refuse(CompileStatus::syntaxError, messages::unexpectedCharacter());
}

}  // namespace kelvarin::jit
