// Puts what was being typed when a program ended back into the fields of the editor.
//
// Used by: the windows, after they have restored a graph. Threads: the user-interface thread.
#pragma once

#include "gui/document/recovery_record.h"

namespace kelvarin {

class PropertyPanel;

// The panel shows the record's action. Returns what no field has taken, for the user to copy; else
// empty.
QString restoreTexts(const RecoveryRecord& record, const PropertyPanel& properties);

}  // namespace kelvarin
