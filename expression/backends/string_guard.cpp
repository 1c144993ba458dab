#include "expression/backends/string_guard.h"

#include <QStringView>

#include "expression/errors/messages.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

constexpr qsizetype kMaximumBytes = 10000;
constexpr int kMaximumBrackets = 500;
constexpr int kMaximumBraces = 50;

using Kind = ExpressionError::Kind;

ExpressionError errorAt(qsizetype position, Kind kind, const QString& message,
                        const QString& token = {}) {
  return {.message = message, .position = static_cast<int>(position), .token = token, .kind = kind};
}

bool isShortcut(const Token& token) {
  return token.sign == "&&" || token.sign == "||";
}

bool endsOperand(const Token& token) {
  const bool isOperator = token.kind == TokenKind::operatorSign;
  const bool isPostfix = token.sign == "!" || token.sign == "'";
  const bool isPart = token.kind != TokenKind::opening && token.kind != TokenKind::separator &&
                      token.kind != TokenKind::unknown;
  return isOperator ? isPostfix : isPart;
}

// One pass over the tokens.
class Scan {
 public:
  explicit Scan(const QString& expression) : m_tokens(expression) {}

  std::optional<ExpressionError> run(QStringView userText) {
    for (const Token& token : m_tokens) {
      if (token.kind == TokenKind::blank || token.kind == TokenKind::comment) {
        continue;
      }
      if (isShortcut(token) && m_isOperandMissing) {
        return operandMissing(positionOf(token), userText);
      }
      if (!nest(token)) {
        const int limit = m_braces > kMaximumBraces ? kMaximumBraces : kMaximumBrackets;
        return errorAt(positionOf(token), Kind::tooLarge, messages::tooDeep(limit));
      }
      m_isOperandMissing = !endsOperand(token);
    }
    return std::nullopt;
  }

 private:
  bool nest(const Token& token) {
    const int step = token.kind == TokenKind::opening   ? 1
                     : token.kind == TokenKind::closing ? -1
                                                        : 0;
    const bool isBrace = token.sign == "{" || token.sign == "}";
    (isBrace ? m_braces : m_brackets) += step;
    return m_brackets <= kMaximumBrackets && m_braces <= kMaximumBraces;
  }

  // The operator as the user wrote it: a word or a sign.
  static ExpressionError operandMissing(qsizetype position, QStringView userText) {
    const ExpressionTokens tokens(userText.sliced(position).toString());
    const QString token = tokens.textAt(0).toString();
    return errorAt(position, Kind::unexpectedToken, messages::operandMissing(token, position),
                   token);
  }

  ExpressionTokens m_tokens;
  bool m_isOperandMissing = true;
  int m_brackets = 0;
  int m_braces = 0;
};

}  // namespace

std::optional<ExpressionError> hazardIn(const QString& expression, const QString& userText) {
  if (expression.toUtf8().size() > kMaximumBytes) {
    return errorAt(-1, Kind::tooLarge, messages::tooLong(expression.size()));
  }
  const qsizetype nul = expression.indexOf(QChar(0));
  if (nul >= 0) {
    return errorAt(nul, Kind::refusedCharacter, messages::nulCharacter());
  }
  return Scan(expression).run(userText);
}

}  // namespace kelvarin
