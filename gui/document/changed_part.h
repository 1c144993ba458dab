// Which setting of an action an edit has changed, for the text of its step and to know which edits
// are of one field.
//
// Used by: graph_commands.cpp.
#pragma once

#include <QString>

namespace kelvarin {

// The name of the attribute or of the element that differs: "separator", "Expression", or in quotes
// the name of a variable. Empty where several do. Both are texts of an action's element.
QString changedPart(const QString& before, const QString& now);

}  // namespace kelvarin
