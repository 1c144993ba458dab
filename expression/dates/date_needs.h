// Which parts of a date context some expressions need, found by the functions they call.
#pragma once

#include <QStringList>

namespace kelvarin {

struct DateNeeds {
  bool reference = false;  // a conversion from or to an elapsed time
  bool format = false;     // a date text that is read or printed
};

// Looks for whole function names before an opening bracket, outside text literals.
DateNeeds dateNeedsOf(const QStringList& expressions);

}  // namespace kelvarin
