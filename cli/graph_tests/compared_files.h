// Compares what a run has written with what a test expects.
#pragma once

#include "cli/graph_tests/case_settings.h"

namespace kelvarin {

// Tables by their columns and rows, other files line by line. Null where they are the same; else
// the first difference. `name` is what the user knows the file by.
QString fileDifference(const QString& expected, const QString& found, const QString& name,
                       const ComparedFile& comparison, const std::string& plugin);

}  // namespace kelvarin
