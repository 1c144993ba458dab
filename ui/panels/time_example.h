// What the standard time parameters mean right now: the current time as a date text, the reference
// time as it is understood, and the current elapsed time.
//
// Shown below the controls of the parameters, so that a mistake is seen before a run.
#pragma once

#include <QString>

#include "expression/dates/time_parameters.h"

namespace kelvarin {

struct TimeExample {
  QString dateText;   // the current time in the format in force, or why there is none
  QString reference;  // the reference time and the current elapsed time, or why there is none
  bool isFormatKnown = false;
  bool isReferenceKnown = false;
};

// Graph parameters in the texts have been replaced.
TimeExample timeExample(const TimeParameters& parameters);

}  // namespace kelvarin
