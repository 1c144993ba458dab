// Waits for files that other programs are still making.
//
// Used by ReadColumnarGel and, for files in its way, by writeColumnarGel. Threads: the engine's.
// Errors: logged here.
#pragma once

#include <functional>

#include <QString>

#include "host/contract/action_item.h"

namespace kelvarin {

// Passes some milliseconds; tests give one that takes no time.
using Pause = std::function<void(int milliseconds)>;
void sleepFor(int milliseconds);

// Neither stopped nor failed: rows come, or the run has ended well and files are being finished.
bool isRunGoingOn(const ActionItem& action);

// A second, cut short when the run stops.
void pauseBetweenLooks(const ActionItem& action, const Pause& pause);

// Whether the file exists, at once or after a wait of at most `seconds`, which ends early when the
// run stops.
bool waitForFile(const ActionItem& action, const QString& file, int seconds, const Pause& pause);

}  // namespace kelvarin
