// What the error dialog shows about an expression that failed its check.
//
// Made by the editors from the answer of FormulaService.
#pragma once

#include <QString>
#include <QStringList>

#include "ui/language/formula_answer.h"

namespace kelvarin {

struct ExpressionReport {
  QString text = {};        // of the error, as it is prescribed; may be empty
  QString expression = {};  // may be empty
  int position = -1;        // 0-based, of the fault in the expression; -1: unknown
  int size = 0;
  QStringList nearestNames = {};
  QString advice = {};  // what to do, in one sentence; may be empty
};

// The nearest names are the replacements of the answer's fixes that put a name for the fault.
ExpressionReport reportOf(const QString& expression, const FormulaAnswer& answer);

}  // namespace kelvarin
