#include "expression/evaluator/chained_comparison.h"

#include <QList>

#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

// A sign or a word that stands between conditions.
bool separates(const ExpressionTokens& tokens, std::size_t index) {
  const Token& token = tokens[index];
  const QStringView text = tokens.text(token);
  const bool isWord = (text == u"and" || text == u"or") && isFreeName(tokens.all(), index);
  return isWord || isAssignment(token) || token.kind == TokenKind::separator || token.sign == "?" ||
         token.sign == ":" || token.sign == "&" || token.sign == "&&" || token.sign == "|" ||
         token.sign == "||";
}

// Comparisons on one level of brackets without another sign that separates them.
struct Comparisons {
  qsizetype operand = 0;  // where the present one begins
  QStringList parts;      // what is complete: operands and signs in turn
};

class ChainSearch {
 public:
  explicit ChainSearch(const QString& expression) : m_expression(expression) {
    const ExpressionTokens tokens(expression);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      visit(tokens, i);
    }
    separate(expression.size(), expression.size());
  }

  const QStringList& chain() const { return m_chain; }

 private:
  void visit(const ExpressionTokens& tokens, std::size_t index) {
    const Token& token = tokens[index];
    const qsizetype begin = positionOf(token);
    const qsizetype end = begin + sizeOf(token);
    if (token.kind == TokenKind::opening) {
      m_levels.append(Comparisons{end, {}});
    } else if (token.kind == TokenKind::closing) {
      separate(begin, end);
      if (m_levels.size() > 1) {
        m_levels.removeLast();
      }
    } else if (isComparison(token)) {
      Comparisons& level = m_levels.back();
      level.parts += {operandUpTo(begin), tokens.text(token).toString()};
      level.operand = end;
    } else if (token.kind == TokenKind::comment || separates(tokens, index)) {
      separate(begin, end);
    }
  }

  void separate(qsizetype end, qsizetype next) {
    constexpr qsizetype kPartsOfTwo = 4;
    const QStringList& parts = m_levels.back().parts;
    if (m_chain.isEmpty() && parts.size() >= kPartsOfTwo) {
      m_chain = withoutMissingOperands(parts + QStringList{operandUpTo(end)});
    }
    m_levels.back() = Comparisons{next, {}};
  }

  // None where an operand is missing, as in a <> b: that mistake has a hint of its own.
  static QStringList withoutMissingOperands(const QStringList& parts) {
    return parts.contains(QString()) ? QStringList() : parts;
  }

  QString operandUpTo(qsizetype end) const {
    const qsizetype begin = m_levels.back().operand;
    return m_expression.sliced(begin, end - begin).trimmed();
  }

  const QString m_expression;
  QList<Comparisons> m_levels{Comparisons()};
  QStringList m_chain;
};

}  // namespace

QStringList chainedComparison(const QString& expression) {
  return ChainSearch(expression).chain();
}

}  // namespace kelvarin
