// Printed dates as results of functions.
#pragma once

#include "expression/functions/calendar_steps.h"

namespace kelvarin {

// In the format in force; the null text for no date.
inline DateText printedDate(const DateContext& dates, DateValue date) {
  return date ? dates.print(*date) : DateText();
}

}  // namespace kelvarin
