// Writes what is whole in a damaged or unfinished columnar file to a new one.
//
// The new file never replaces another; it is removed when it cannot be finished.
// Used by the editor of the reading action.
// Threads: any; it takes as long as reading and writing the table.
// Errors: texts for the user; nothing logs.
#pragma once

#include <functional>

#include <QString>

#include "base/result.h"
#include "columnar/reader/table_recovery.h"

namespace kelvarin {

// `progress` is called after each block with the number of rows so far. `isStopped` ends it early;
// then there is no new file, and the outcome has no rows.
Result<RecoveryOutcome, QString> salvageTable(const QString& damaged, const QString& newFile,
                                              const std::function<void(std::uint64_t)>& progress,
                                              const std::function<bool()>& isStopped);

}  // namespace kelvarin
