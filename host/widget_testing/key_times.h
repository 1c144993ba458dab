// How long keys keep the thread of a field from anything else.
//
// Used by the tests that hold the editors to what users are promised.
// Threads: the user-interface thread.
#pragma once

class QString;
class QWidget;

namespace kelvarin::testing {

// Of a key and all that follows it at once, in milliseconds of processor time of this thread, which
// other programs on the machine do not slow down.
struct KeyTimes {
  double median = 0.0;
  double percentile999 = 0.0;
};

// Types the characters of `keys` again and again, `count` in all.
KeyTimes timeOfKeys(QWidget& field, const QString& keys, int count);

}  // namespace kelvarin::testing
