// Waits for files that other programs are still making.
//
// Used by ReadColumnarGel and, for previous files, by writeColumnarGel.
// Threads: the engine's.
// Errors: logged here.
#pragma once

#include <functional>

#include <QString>

#include "host/contract/action_item.h"

namespace kelvarin {

// Sleeps for the time; tests pass one that returns at once.
using Pause = std::function<void(int milliseconds)>;
void sleepFor(int milliseconds);

// The run has neither failed nor been stopped: it is running, or its files are being finished.
bool isRunGoingOn(const ActionItem& action);

// Pauses for a second, or less when the run stops.
void pauseBetweenLooks(const ActionItem& action, const Pause& pause);

// Whether the file exists, at once or after a wait of at most `seconds`, which ends early when the
// run stops.
bool waitForFile(const ActionItem& action, const QString& file, int seconds, const Pause& pause);

}  // namespace kelvarin
