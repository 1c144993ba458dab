// What a library's numeric functions were given that is no number, which they take for 0 without a
// word.
//
// Filled by the String back-end; the evaluator makes a warning of it.
#pragma once

#include <QString>

namespace kelvarin {

struct TextArguments {
  long long count = 0;
  // Of the first one.
  QString function;
  int argument = 0;   // counted from 1
  int position = -1;  // of the function in the user's text
  double row = 0.0;
};

}  // namespace kelvarin
