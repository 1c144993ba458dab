// A sink that can be checked without a run: it looks at its settings, at the columns it is to get
// and at the folder it is to write to.
//
// Sinks of the host and of plug-ins derive from it beside ActionItem. A check of a graph calls it
// in place of init() and the row routine, so nothing is opened, created or deleted; which pins are
// linked and the columns announced to them are known then, and no pin has a row.
// Errors: logged, and the action's run is failed with failRun().
#pragma once

#include <QString>

#include "base/export.h"

namespace kelvarin {

class KELVARIN_CORE OutputCheck {
 public:
  virtual ~OutputCheck();
  virtual void checkOutput() = 0;
};

// Why the file could not be created, as far as that can be known before; empty when it could.
// Names that stand for devices and pipes are not looked at.
KELVARIN_CORE QString whyNotWritable(const QString& file);
// The same, where the folder is to be created if it is not there.
KELVARIN_CORE QString whyNotCreatable(const QString& file);

}  // namespace kelvarin
