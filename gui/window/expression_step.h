// New expression actions that begin with a value or a column in the preview.
//
// Used by: host_window_editing.cpp.
#pragma once

#include <QByteArray>

#include "gui/document/graph_commands.h"
#include "gui/preview/row_condition.h"

namespace kelvarin {

// Keeps the rows for which the condition is true.
QByteArray filterElement(const RowCondition& condition);
// A new column that begins as a copy of this one.
QByteArray calculatorElement(const PinColumns::Column& column, const QString& name);

// Behind an output pin, or in the link that leads into an input pin; one step of undo. kNoId where
// there is no such link.
ActionId addStepAt(GraphCommands& commands, const PinRef& pin, const QString& typeName,
                   const QByteArray& element);

}  // namespace kelvarin
