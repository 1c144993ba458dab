#include "expression/backends/equals_signs.h"

#include <algorithm>

#include "expression/backends/expression_text.h"

namespace kelvarin {

bool EqualsSign::isAssignment() const {
  const bool isComparison = text == QLatin1String("==") || text == QLatin1String("!=") ||
                            text == QLatin1String("<=") || text == QLatin1String(">=");
  return !isComparison;
}

QList<EqualsSign> equalsSigns(const QString& expression) {
  constexpr QStringView kSignCharacters = u"=<>!+-*/";
  QList<EqualsSign> signs;
  qsizetype i = 0;
  while (i < expression.size() && expression[i] != u'#') {
    if (expression[i] == u'"') {
      i = endOfTextLiteral(expression, i);
      continue;
    }
    qsizetype end = i;
    while (end < expression.size() && kSignCharacters.contains(expression[end])) {
      ++end;
      if (expression[end - 1] == u'=' && (end == expression.size() || expression[end] != u'=')) {
        break;
      }
    }
    const QString sign = expression.sliced(i, end - i);
    if (sign.endsWith(u'=')) {
      signs.append({i, sign});
    }
    i = std::max(end, i + 1);
  }
  return signs;
}

bool mayAssign(const QString& expression) {
  const QList<EqualsSign> signs = equalsSigns(expression);
  return std::any_of(signs.begin(), signs.end(),
                     [](const EqualsSign& sign) { return sign.isAssignment(); });
}

}  // namespace kelvarin
