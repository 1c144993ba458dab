// What is there under the name of a columnar file that is about to be written.
//
// Used by OutputTable and the writing action. Threads: the engine's.  Errors: logged here.
#pragma once

#include <functional>

#include "columnar/actions/waiting.h"

namespace kelvarin {

enum class Attempt {
  done,
  inUse,  // something is in the way that may go: another process writes the file, or it cannot be
          // removed
  failed  // the attempt has logged why
};

// Waits for a file that is locked, at most `seconds`, and tries again each second. False: logged,
// and the run is marked as failed; or the run has stopped meanwhile.
[[nodiscard]] bool untilUnlocked(ActionItem& action, const QString& file, int seconds,
                                 const Pause& pause, const std::function<Attempt()>& attempt);

// A file with something in it that is no columnar file.
bool isForeignFile(const QString& file);

}  // namespace kelvarin
