#include "expression/tokens/tokenizer.h"

#include <algorithm>
#include <vector>

#include "expression/tokens/literals.h"
#include "expression/tokens/units.h"

namespace kelvarin {

namespace {

struct Sign {
  std::string_view text;
  TokenKind kind;
};

// The longer of two that begin alike comes first.
constexpr Sign kSigns[] = {{"<<", TokenKind::operatorSign}, {">>", TokenKind::operatorSign},
                           {"<=", TokenKind::operatorSign}, {">=", TokenKind::operatorSign},
                           {"==", TokenKind::operatorSign}, {"!=", TokenKind::operatorSign},
                           {"&&", TokenKind::operatorSign}, {"||", TokenKind::operatorSign},
                           {"//", TokenKind::operatorSign}, {"+=", TokenKind::operatorSign},
                           {"-=", TokenKind::operatorSign}, {"*=", TokenKind::operatorSign},
                           {"/=", TokenKind::operatorSign}, {"<", TokenKind::operatorSign},
                           {">", TokenKind::operatorSign},  {"=", TokenKind::operatorSign},
                           {"+", TokenKind::operatorSign},  {"-", TokenKind::operatorSign},
                           {"*", TokenKind::operatorSign},  {"/", TokenKind::operatorSign},
                           {"%", TokenKind::operatorSign},  {"^", TokenKind::operatorSign},
                           {"&", TokenKind::operatorSign},  {"|", TokenKind::operatorSign},
                           {"!", TokenKind::operatorSign},  {"'", TokenKind::operatorSign},
                           {"?", TokenKind::operatorSign},  {":", TokenKind::operatorSign},
                           {"(", TokenKind::opening},       {")", TokenKind::closing},
                           {"[", TokenKind::opening},       {"]", TokenKind::closing},
                           {"{", TokenKind::opening},       {"}", TokenKind::closing},
                           {",", TokenKind::separator},     {";", TokenKind::separator}};

template <typename Character>
bool beginsWith(std::basic_string_view<Character> text, std::string_view ascii) {
  return text.front() == static_cast<Character>(ascii.front()) && text.size() >= ascii.size() &&
         std::equal(ascii.begin(), ascii.end(), text.begin(),
                    [](char a, Character b) { return static_cast<Character>(a) == b; });
}

template <typename Character>
std::size_t sizeOfBlanks(std::basic_string_view<Character> text) {
  const auto isBlank = [](Character c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  const auto end = std::find_if_not(text.begin(), text.end(), isBlank);
  return static_cast<std::size_t>(end - text.begin());
}

// A `{k}` elsewhere is an array of one variable.
bool endsValue(const Tokens& tokens) {
  const std::size_t last = tokenBefore(tokens, tokens.size());
  if (last == kNoToken) {
    return false;
  }
  const Token& token = tokens[last];
  return token.kind == TokenKind::name || token.kind == TokenKind::number || token.sign == ")" ||
         token.sign == "]";
}

// The token that the text begins with, as if it stood at the start.
template <typename Character>
Token firstToken(std::basic_string_view<Character> text, const Tokens& before) {
  if (const std::size_t size = sizeOfBlanks(text); size > 0) {
    return {.kind = TokenKind::blank, .size = size};
  }
  if (const std::size_t size = sizeOfNumber(text); size > 0) {
    return {.kind = TokenKind::number, .size = size};
  }
  if (const std::size_t size = sizeOfName(text); size > 0) {
    return {.kind = TokenKind::name, .size = size};
  }
  if (const std::size_t size = sizeOfTextLiteral(text); size > 0) {
    return {.kind = TokenKind::text, .size = size, .fault = faultOfTextLiteral(text)};
  }
  if (text.front() == '#') {
    return {.kind = TokenKind::comment, .size = text.size()};
  }
  for (const Unit& unit : kUnits) {
    if (beginsWith(text, unit.text) && endsValue(before)) {
      return {.kind = TokenKind::unit, .size = unit.text.size(), .sign = unit.text};
    }
  }
  for (const Sign& sign : kSigns) {
    if (beginsWith(text, sign.text)) {
      return {.kind = sign.kind, .size = sign.text.size(), .sign = sign.text};
    }
  }
  return {.kind = TokenKind::unknown, .size = 1};
}

bool isBracket(const Token& token) {
  return token.kind == TokenKind::opening || token.kind == TokenKind::closing;
}

std::string_view closingOf(std::string_view opening) {
  return opening == "(" ? ")" : opening == "[" ? "]" : "}";
}

}  // namespace

template <typename Character>
Tokens tokensOf(std::basic_string_view<Character> expression) {
  Tokens tokens;
  tokens.reserve(expression.size() / 2 + 1);
  for (std::size_t start = 0; start < expression.size();) {
    Token token = firstToken(expression.substr(start), tokens);
    token.start = start;
    start = token.end();
    tokens.push_back(token);
  }
  return tokens;
}

template Tokens tokensOf(std::basic_string_view<char>);
template Tokens tokensOf(std::basic_string_view<char16_t>);

bool isComparison(const Token& token) {
  return token.sign == "==" || token.sign == "!=" || token.sign == "<=" || token.sign == ">=" ||
         token.sign == "<" || token.sign == ">";
}

bool isAssignment(const Token& token) {
  return token.sign.ends_with('=') && !isComparison(token);
}

std::size_t tokenBefore(const Tokens& tokens, std::size_t index) {
  while (index > 0) {
    if (tokens[--index].kind != TokenKind::blank) {
      return index;
    }
  }
  return kNoToken;
}

std::size_t tokenAfter(const Tokens& tokens, std::size_t index) {
  while (++index < tokens.size()) {
    if (tokens[index].kind != TokenKind::blank) {
      return index;
    }
  }
  return kNoToken;
}

bool isFreeName(const Tokens& tokens, std::size_t index) {
  return tokens[index].kind == TokenKind::name &&
         (index == 0 || tokens[index - 1].kind != TokenKind::number);
}

bool isCall(const Tokens& tokens, std::size_t index) {
  const std::size_t next = tokenAfter(tokens, index);
  return isFreeName(tokens, index) && next != kNoToken && tokens[next].sign == "(";
}

std::size_t partnerOf(const Tokens& tokens, std::size_t index) {
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (!isBracket(token)) {
      continue;
    }
    if (token.kind == TokenKind::opening) {
      open.push_back(i);
      continue;
    }
    const bool isPair = !open.empty() && closingOf(tokens[open.back()].sign) == token.sign;
    if (isPair && (i == index || open.back() == index)) {
      return i == index ? open.back() : i;
    }
    if (isPair) {
      open.pop_back();
    } else {
      open.clear();
    }
  }
  return kNoToken;
}

}  // namespace kelvarin
