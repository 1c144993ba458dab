// The token that keeps an expression from being evaluated by the batch.
//
// Found by the typed parser; shown by what explains how a run evaluates.
#pragma once

#include <QString>

namespace kelvarin {

struct BatchRefusal {
  QString token;
  int position = -1;  // 0-based UTF-16 unit of the expression
};

}  // namespace kelvarin
