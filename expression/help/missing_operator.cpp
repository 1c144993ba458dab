#include "expression/help/missing_operator.h"

#include <algorithm>

#include "expression/help/messages.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

using Kind = ExpressionError::Kind;

class Neighbours {
 public:
  Neighbours(const QString& expression, const QStringList& variables)
      : m_tokens(expression), m_variables(variables) {}

  QString hint(const ExpressionError& error) const {
    const std::size_t right = beginOfSecondValue(error);
    const std::size_t left = right == kNoToken ? kNoToken : tokenBefore(m_tokens.all(), right);
    if (left == kNoToken || !canEndValue(left) || !canBeginValue(right) || isCallOf(left, right)) {
      return {};
    }
    const bool hasText =
        m_tokens[left].kind == TokenKind::text || m_tokens[right].kind == TokenKind::text;
    return messages::operatorMissing(
        shown(left), hasText ? QStringLiteral("//") : QStringLiteral("*"), shown(right));
  }

 private:
  // The first token at the position or behind it.
  std::size_t tokenAt(int position) const {
    const auto found =
        std::find_if(m_tokens.begin(), m_tokens.end(), [position](const Token& token) {
          return positionOf(token) >= position && token.kind != TokenKind::blank;
        });
    return found == m_tokens.end() ? kNoToken : static_cast<std::size_t>(found - m_tokens.begin());
  }

  // Libraries report the second value, but a bracket behind a variable at the variable.
  std::size_t beginOfSecondValue(const ExpressionError& error) const {
    const std::size_t index = error.position < 0 ? kNoToken : tokenAt(error.position);
    if (index == kNoToken || error.kind == Kind::unexpectedToken) {
      return index;
    }
    if (error.kind != Kind::undefinedName) {
      return kNoToken;
    }
    const bool isTailOfNumber =
        m_tokens[index].kind == TokenKind::name && !isFreeName(m_tokens.all(), index);
    if (isTailOfNumber) {
      return index;
    }
    return isVariable(index) && isCall(m_tokens.all(), index) ? tokenAfter(m_tokens.all(), index)
                                                              : kNoToken;
  }

  bool isVariable(std::size_t index) const {
    return m_variables.contains(m_tokens.textAt(index).toString());
  }

  bool isValue(std::size_t index) const {
    const QStringView text = m_tokens.textAt(index);
    const bool isWordOperator = (text == u"and" || text == u"or") && !isVariable(index);
    const TokenKind kind = m_tokens[index].kind;
    return (kind == TokenKind::name && !isWordOperator) || kind == TokenKind::number ||
           kind == TokenKind::text;
  }
  bool canEndValue(std::size_t index) const {
    return isValue(index) || (m_tokens[index].sign == ")" && !closesCast(index));
  }
  bool canBeginValue(std::size_t index) const {
    return isValue(index) || m_tokens[index].sign == "(";
  }

  bool closesCast(std::size_t index) const {
    if (index < 2 || m_tokens[index - 2].sign != "(" || isVariable(index - 1)) {
      return false;
    }
    const QStringView type = m_tokens.textAt(index - 1);
    return type == u"int" || type == u"float";
  }

  // A function's name and the bracket of its arguments.
  bool isCallOf(std::size_t name, std::size_t bracket) const {
    return m_tokens[bracket].sign == "(" && m_tokens[name].kind == TokenKind::name &&
           !isVariable(name);
  }

  QString shown(std::size_t index) const {
    QString dots = QStringLiteral("(...)");
    const QStringView sign = m_tokens.textAt(index);
    if (sign == u"(" || sign == u")") {
      return dots;
    }
    const bool isFunction = isCall(m_tokens.all(), index) && !isVariable(index);
    return sign.toString() + (isFunction ? dots : QString());
  }

  const ExpressionTokens m_tokens;
  const QStringList& m_variables;
};

}  // namespace

QString missingOperatorHint(const ExpressionError& error, const QString& expression,
                            const QStringList& variables) {
  return Neighbours(expression, variables).hint(error);
}

}  // namespace kelvarin
