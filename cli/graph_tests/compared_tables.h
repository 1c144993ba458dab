// Compares two tables row by row.
//
// Threads: any number of comparisons at the same time.
#pragma once

#include <QString>

#include "cli/graph_tests/case_settings.h"
#include "cli/table_kind.h"

namespace kelvarin {

// Null where both have the same columns and rows; else the first difference, for the user.
QString tableDifference(const QString& expected, const TableKind& expectedKind,
                        const QString& found, const TableKind& foundKind,
                        const ComparedFile& comparison, const std::string& plugin);

}  // namespace kelvarin
