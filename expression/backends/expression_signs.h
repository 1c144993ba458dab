// The scanner that finds the signs of an expression.
//
// Positions count 16-bit units.
#pragma once

#include <algorithm>

#include <QString>
#include <QStringView>

#include "expression/backends/expression_text.h"

namespace kelvarin {

// Calls visit(start, end) for every run of sign characters, which ends with its first `=` or `==`,
// and for every other character outside texts. Returns where the comment at the end begins, or the
// size where there is none.
template <typename Visitor>
qsizetype forEachSign(const QString& expression, Visitor visit) {
  constexpr QStringView kSignCharacters = u"=<>!+-*/";
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
    end = std::max(end, i + 1);
    visit(i, end);
    i = end;
  }
  return i;
}

}  // namespace kelvarin
