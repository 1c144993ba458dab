// Keys, clicks, drags, wheels and commands at random, as a child at the keyboard would send them.
//
// Used by the tests of windows and editors, under the address sanitizer, too.
// Threads: the user-interface thread.
#pragma once

#include <functional>

class QWidget;

namespace kelvarin::testing {

// Sends `count` events to visible children of `root`; questions that come up are answered at
// random. `afterEach` is called between them, with the number of the event; it may end the test by
// an assertion. The seed is printed. RANDOM_EVENTS_SEED and RANDOM_EVENTS_COUNT set other values.
void sendRandomEvents(QWidget& root, int count,
                      const std::function<void(int)>& afterEach = nullptr);

}  // namespace kelvarin::testing
