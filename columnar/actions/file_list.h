// Reads the names of files or of columns from a table on an input pin.
//
// Used by ReadColumnarGel when its settings take names from its pins.
// Threads: the engine's.
// Errors: logged here; nothing is returned then.
#pragma once

#include <optional>

#include <QStringList>

#include "host/contract/action_item.h"

namespace kelvarin {

// The first value of every row of input pin 0. A name that cannot be read stops the run when
// `abortsOnUnreadable`, and is skipped otherwise.
std::optional<QStringList> fileNamesFromPin(ActionItem& action, bool abortsOnUnreadable);
// The first value of every row of input pin 1.
std::optional<QStringList> columnNamesFromPin(ActionItem& action);

}  // namespace kelvarin
