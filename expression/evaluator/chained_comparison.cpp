#include "expression/evaluator/chained_comparison.h"

#include <QList>

#include "expression/backends/expression_signs.h"

namespace kelvarin {

namespace {

// The comparison that a run of signs begins with, as `<` of `<-`; empty where it is none.
QString comparisonOf(QStringView run) {
  const bool isShift = run.startsWith(u"<<") || run.startsWith(u">>");
  for (const QStringView comparison : {u"==", u"!=", u"<=", u">="}) {
    if (run.startsWith(comparison)) {
      return comparison.toString();
    }
  }
  const bool isOrder = !isShift && (run.front() == u'<' || run.front() == u'>');
  return isOrder ? run.first(1).toString() : QString();
}

// Of the word at the position, if it joins conditions; else 0.
qsizetype sizeOfJoiningWord(const QString& expression, qsizetype position) {
  const QStringView rest = QStringView(expression).sliced(position);
  const qsizetype size = rest.startsWith(u"and") ? 3 : rest.startsWith(u"or") ? 2 : 0;
  const bool isBegin = position == 0 || !isNameCharacter(expression[position - 1]);
  const bool isEnd = size == rest.size() || !isNameCharacter(rest[size]);
  return isBegin && isEnd ? size : 0;
}

// Comparisons on one level of brackets without another sign that separates them.
struct Comparisons {
  qsizetype operand = 0;  // where the present one begins
  QStringList parts;      // what is complete: operands and signs in turn
};

class ChainSearch {
 public:
  explicit ChainSearch(const QString& expression) : m_expression(expression) {
    const qsizetype end =
        forEachSign(expression, [this](qsizetype from, qsizetype to) { visit(from, to); });
    separate(end, end);
  }

  const QStringList& chain() const { return m_chain; }

 private:
  void visit(qsizetype begin, qsizetype end) {
    constexpr QStringView kOpening = u"([{";
    constexpr QStringView kClosing = u")]}";
    constexpr QStringView kSeparators = u",?:&|;";
    const QChar first = m_expression[begin];
    const QStringView run = QStringView(m_expression).sliced(begin, end - begin);
    if (kOpening.contains(first)) {
      m_levels.append(Comparisons{end, {}});
    } else if (kClosing.contains(first)) {
      separate(begin, end);
      if (m_levels.size() > 1) {
        m_levels.removeLast();
      }
    } else if (const QString sign = comparisonOf(run); !sign.isEmpty()) {
      Comparisons& level = m_levels.back();
      level.parts += {operandUpTo(begin), sign};
      level.operand = begin + sign.size();
    } else if (const qsizetype size = sizeOfJoiningWord(m_expression, begin); size > 0) {
      separate(begin, begin + size);
    } else if (kSeparators.contains(first) || run.endsWith(u'=')) {
      separate(begin, end);
    }
  }

  void separate(qsizetype end, qsizetype next) {
    constexpr qsizetype kPartsOfTwo = 4;
    const QStringList& parts = m_levels.back().parts;
    if (m_chain.isEmpty() && parts.size() >= kPartsOfTwo) {
      m_chain = parts + QStringList{operandUpTo(end)};
    }
    m_levels.back() = Comparisons{next, {}};
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
