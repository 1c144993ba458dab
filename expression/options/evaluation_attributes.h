// The attributes that say how expressions are evaluated, one line each: for the elements of the
// actions, for the options of the command that evaluates one expression, and for its text in
// messages.
#pragma once

#include <QStringList>

#include "expression/evaluator/variables.h"
#include "host/contract/attribute_table.h"

namespace kelvarin {

using EvaluationAttributes = AttributeTable<EvaluationOptions>;

// All of them, in the order in which they are written.
EvaluationAttributes evaluationAttributes();
// Without the casts of keys, of which a condition has none.
EvaluationAttributes conditionAttributes();
// The standard time parameters alone.
EvaluationAttributes timeAttributes();

// NAME=VALUE of each attribute that has not its default, as `kelvarin eval --opt` takes it, but for
// the treatment of failed rows.
QStringList changedOptions(const EvaluationOptions& options);

}  // namespace kelvarin
