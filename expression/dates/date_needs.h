// Which parts of a date context an expression needs.
//
// Stated by the lines of the function table, used when an evaluator prepares its date context.
#pragma once

namespace kelvarin {

struct DateNeeds {
  bool reference = false;  // a conversion from or to an elapsed time
  bool format = false;     // a date text that is read or printed
};

}  // namespace kelvarin
