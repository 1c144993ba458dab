// Removes what an earlier run has left under the name of a file that is about to be written.
//
// Used by OutputFiles. Threads: the engine's.  Errors: logged here.
#pragma once

#include "columnar/actions/waiting.h"

namespace kelvarin {

enum class Removal {
  done,     // there is no such file now
  failed,   // it cannot be removed; the run is marked as failed
  stopped,  // the run has stopped while waiting
};

// A main file that was there is followed by its side files; nothing else is touched. A file that
// cannot be removed is waited for, at most `seconds`.
Removal removePreviousFile(ActionItem& action, const QString& mainFile, int seconds,
                           const Pause& pause);

}  // namespace kelvarin
