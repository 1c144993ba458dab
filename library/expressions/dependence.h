// Why the result of an expression depends on more than the values of its row, so that whoever has
// the rows of a table on several machines can refuse it.
//
// Threads: any.
#pragma once

#include <QString>

namespace kelvarin {

struct Dependence {
  int reasons = 0;          // a sum of KELVARIN_DEPENDS_ON_...
  QString token;            // the first one that it comes from, or the name of a setting
  long long position = -1;  // of the token, in 16-bit units; -1 for a setting

  // The one that comes first keeps its token.
  void add(int reason, const QString& from, long long at);
};

// Of what the expression says. `hasRowNumber`: `_n` is the number of the row.
Dependence dependenceOf(const QString& expression, bool hasRowNumber);

}  // namespace kelvarin
