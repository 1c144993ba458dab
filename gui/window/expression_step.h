// The settings of a new expression action, for steps that begin with a value or a column in the
// preview.
//
// Used by: host_window_editing.cpp.
#pragma once

#include <QByteArray>
#include <QString>

#include "host/contract/pin_columns.h"

namespace kelvarin {

// Filters by the condition; the columns that it names are bound.
QByteArray filterElement(const QString& condition, const PinColumns& columns);
// A new column that begins as a copy of this one.
QByteArray calculatorElement(const QString& column, const PinColumns& columns);

}  // namespace kelvarin
