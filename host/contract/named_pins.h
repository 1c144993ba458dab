// An action whose pins have names, since they differ in what their rows are.
//
// Used by: hosts that draw graphs.
#pragma once

#include <QString>

#include "base/export.h"

namespace kelvarin {

class KELVARIN_CORE NamedPins {
 public:
  virtual ~NamedPins();

  // In English, two or three words; empty for a pin without a name.
  virtual QString pinName(int pin, bool isOutput) const = 0;
};

}  // namespace kelvarin
