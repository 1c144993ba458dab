#include "ui/widgets/typing_pairs.h"

#include <algorithm>

#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

constexpr QChar kQuote = u'"';

QChar closingOf(QChar typed) {
  switch (typed.unicode()) {
    case u'(':
      return u')';
    case u'[':
      return u']';
    case u'{':
      return u'}';
    case u'"':
      return kQuote;
    default:
      return {};
  }
}

bool isClosing(QChar c) {
  return c == u')' || c == u']' || c == u'}';
}

bool isUnclosed(const Token& token) {
  return token.kind == TokenKind::text && token.fault == TokenFault::unclosed;
}

// The text literal around the position; null outside of texts.
const Token* literalAround(const ExpressionTokens& tokens, qsizetype position) {
  const auto at = static_cast<std::size_t>(position);
  for (const Token& token : tokens) {
    if (token.kind == TokenKind::text && token.start < at &&
        (at < token.end() || isUnclosed(token))) {
      return &token;
    }
  }
  return nullptr;
}

bool hasUnmatchedOpening(const ExpressionTokens& tokens, qsizetype before) {
  for (std::size_t i = 0; i < tokens.size() && positionOf(tokens[i]) < before; ++i) {
    if (tokens[i].kind == TokenKind::opening && partnerOf(tokens.all(), i) == kNoToken) {
      return true;
    }
  }
  return false;
}

TextChange passOver(qsizetype position) {
  return {position, 0, {}, position + 1, position + 1};
}

std::optional<TextChange> typedClosing(const ExpressionTokens& tokens, qsizetype position) {
  if (hasUnmatchedOpening(tokens, position)) {
    return {};
  }
  return passOver(position);
}

std::optional<TextChange> typedQuoteInLiteral(const QString& text, const Token& literal,
                                              qsizetype position) {
  const bool isAtItsEnd =
      !isUnclosed(literal) && position == static_cast<qsizetype>(literal.end()) - 1;
  return isAtItsEnd && text[position] == kQuote ? std::optional(passOver(position)) : std::nullopt;
}

// A partner in front of a value would be in the way of the bracket that the user has in mind.
bool canPairBefore(const QString& text, qsizetype position) {
  if (position >= text.size()) {
    return true;
  }
  const QChar next = text[position];
  return !isNameCharacter(next.unicode()) && next != kQuote && next != u'(' && next != u'[' &&
         next != u'{';
}

}  // namespace

std::optional<TextChange> typedBracket(const QString& text, qsizetype anchor, qsizetype position,
                                       QChar typed) {
  const QChar closing = closingOf(typed);
  if (closing.isNull() && !isClosing(typed)) {
    return {};
  }
  const ExpressionTokens tokens(text);
  if (anchor != position) {
    if (closing.isNull()) {
      return {};
    }
    const qsizetype start = std::min(anchor, position);
    const QString inner = text.mid(start, std::abs(position - anchor));
    return TextChange{start, inner.size(), typed + inner + closing, anchor + 1, position + 1};
  }
  const Token* literal = literalAround(tokens, position);
  if (literal != nullptr) {
    return typed == kQuote ? typedQuoteInLiteral(text, *literal, position) : std::nullopt;
  }
  if (isClosing(typed)) {
    const bool isThere = position < text.size() && text[position] == typed;
    return isThere ? typedClosing(tokens, position) : std::nullopt;
  }
  if (!canPairBefore(text, position)) {
    return {};
  }
  return TextChange{position, 0, QString(typed) + closing, position + 1, position + 1};
}

std::optional<TextChange> removedPair(const QString& text, qsizetype position) {
  if (position < 1 || position >= text.size()) {
    return {};
  }
  const QChar closing = closingOf(text[position - 1]);
  if (closing.isNull() || text[position] != closing) {
    return {};
  }
  const ExpressionTokens tokens(text);
  const auto start = static_cast<std::size_t>(position - 1);
  // Two quotes may be the end of one text and the beginning of the next.
  const bool isPair = std::any_of(tokens.begin(), tokens.end(), [&](const Token& token) {
    return token.start == start &&
           (token.kind == TokenKind::opening || (token.kind == TokenKind::text && token.size == 2));
  });
  return isPair ? std::optional(TextChange{position - 1, 2, {}, position - 1, position - 1})
                : std::nullopt;
}

}  // namespace kelvarin
