// The columns of one row for another.
//
// Used by: actions that hand on the columns they get, and those that keep them.
#pragma once

#include "base/export.h"
#include "host/contract/one_row.h"

namespace kelvarin {

// Names, types and sort order, and no values: those of an announced row may be gone.
KELVARIN_CORE void copyColumns(const OneRow& from, OneRow& to);

}  // namespace kelvarin
