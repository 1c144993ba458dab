// The names that a table on an input pin gives: of files to read, or of columns.
//
// Used by ReadColumnarGel when its settings take names from its pins.
// Threads: the engine's.  Errors: logged here; nothing then.
#pragma once

#include <optional>

#include <QStringList>

#include "host/contract/action_item.h"

namespace kelvarin {

// Every row's first value of input pin 0. A name that cannot be read stops the run when
// `abortsOnUnreadable`, and is skipped otherwise.
std::optional<QStringList> fileNamesFromPin(ActionItem& action, bool abortsOnUnreadable);
// Every row's first value of input pin 1; without rows there are none.
std::optional<QStringList> columnNamesFromPin(ActionItem& action);

}  // namespace kelvarin
