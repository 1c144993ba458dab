// What the cells of the variable table show of one input variable, and how a typed text changes it.
//
// Used by VariablesModel.
#pragma once

#include <QString>
#include <QStringList>

#include "expression/evaluator/variables.h"

namespace kelvarin {

// In the order of VariableKind.
QStringList variableTypeNames();
QString typeNameOf(const InputVariable& variable);
// A sample goes along where the other type can hold it.
void setType(InputVariable& variable, VariableKind kind);

// The column that is read; how many others are listed before it is in the tool tip.
QString columnText(const InputVariable& variable);
QString columnToolTip(const InputVariable& variable);

// Empty for the default.
QString sampleText(const InputVariable& variable);
// False: the text is no number, where one is needed.
bool setSample(InputVariable& variable, const QString& text);

}  // namespace kelvarin
