// Statistics of columns as lines of a result.
//
// Used by: stats_command.cpp.
#pragma once

#include <string>
#include <vector>

#include <QStringList>

#include "cli/look/column_statistics.h"
#include "cli/result_table.h"

namespace kelvarin {

ResultTable statisticsTable(const QStringList& names, const std::vector<ColumnSummary>& columns);

// How estimates of a table were made, a line each; empty where there are none.
QString remarksOn(const std::vector<ColumnSummary>& columns, std::size_t distinctBound);

}  // namespace kelvarin
