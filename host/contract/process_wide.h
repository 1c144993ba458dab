// Locks that are one for the process, though several of its libraries have a copy of the code that
// takes them: the program, the plug-in and the library with the editors.
//
// Threads: any.
#pragma once

#include <mutex>

#include "base/export.h"

namespace kelvarin {

// Held while the names of new columns are computed.
KELVARIN_CORE std::mutex& columnNamesMutex();
// Of the first use of the library for text expressions, whose tables are made then without a lock.
KELVARIN_CORE std::once_flag& firstTextExpression();

}  // namespace kelvarin
