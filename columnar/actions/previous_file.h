// The file that exists under the name of a columnar file to be written.
//
// Used by OutputTable and the writing action.
// Threads: the engine's.
// Errors: logged here.
#pragma once

#include <functional>

#include "columnar/actions/waiting.h"

namespace kelvarin {

enum class Attempt {
  done,
  inUse,  // the file may become free: another process writes it, or it cannot be removed
  failed  // the attempt has logged why
};

// Waits for a file that is locked, at most `seconds`, and tries again each second. False: logged,
// and the run is marked as failed; or the run has stopped meanwhile.
[[nodiscard]] bool untilUnlocked(ActionItem& action, const QString& file, int seconds,
                                 const Pause& pause, const std::function<Attempt()>& attempt);

// The file is not empty, and no columnar file.
bool isForeignFile(const QString& file);

}  // namespace kelvarin
