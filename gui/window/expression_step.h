// The settings of a new expression action, for steps that begin with a value or a column in the
// preview.
//
// Used by: host_window_editing.cpp.
#pragma once

#include <QByteArray>

#include "gui/preview/row_condition.h"

namespace kelvarin {

// Keeps the rows for which the condition is true.
QByteArray filterElement(const RowCondition& condition);
// A new column that begins as a copy of this one.
QByteArray calculatorElement(const PinColumns::Column& column);

}  // namespace kelvarin
