// Completes the names of the graph's parameters after `${` in a field.
//
// Used by: all fields whose text a run expands, of editors and of the table of the parameters.
// Threads: the user-interface thread.
#pragma once

#include <QStringList>

#include "base/export.h"

class QLineEdit;

namespace kelvarin {

// Replaces a completer that the field has; without names it has none.
KELVARIN_CORE void completeParameters(QLineEdit& field, const QStringList& names);

}  // namespace kelvarin
