// The names of the files that a writing action would make, as an editor shows them.
//
// Threads: any, with an action that no other thread uses.
// Errors: texts for the user; nothing logs.
#pragma once

#include "columnar/actions/write_columnar_gel.h"

namespace kelvarin {

// One name for each value of the split column where the settings split by value, a null one for a
// missing value; the first names where they split by size.
Result<QStringList, QString> exampleNames(const WriteColumnarGel& action,
                                          const QStringList& values);

}  // namespace kelvarin
