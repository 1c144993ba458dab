// Opens a columnar file for what an editor does with it outside a run.
//
// Threads: any.
// Errors: texts for the user; nothing logs.
#pragma once

#include <memory>

#include <QString>

#include "base/result.h"
#include "columnar/reader/gel_file.h"

namespace kelvarin {

// Incomplete files are opened, too. The error says why it cannot be, and what may have been meant.
Result<std::unique_ptr<GelFile>, QString> openTable(const QString& file);

}  // namespace kelvarin
