#include "expression/backends/equals_signs.h"

#include <algorithm>

#include "expression/backends/expression_signs.h"

namespace kelvarin {

bool EqualsSign::isAssignment() const {
  const bool isComparison = text == QLatin1String("==") || text == QLatin1String("!=") ||
                            text == QLatin1String("<=") || text == QLatin1String(">=");
  return !isComparison;
}

QList<EqualsSign> equalsSigns(const QString& expression) {
  QList<EqualsSign> signs;
  forEachSign(expression, [&](qsizetype start, qsizetype end) {
    if (expression[end - 1] == u'=') {
      signs.append({start, expression.sliced(start, end - start)});
    }
  });
  return signs;
}

bool mayAssign(const QString& expression) {
  const QList<EqualsSign> signs = equalsSigns(expression);
  return std::any_of(signs.begin(), signs.end(),
                     [](const EqualsSign& sign) { return sign.isAssignment(); });
}

}  // namespace kelvarin
