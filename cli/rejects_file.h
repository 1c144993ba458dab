// The file of the rows that a run has rejected, written when the run is over.
//
// It is written as any result: to a file that gets its name when it is complete, by the sink of its
// format.
// Threads: the caller's.
#pragma once

#include "cli/graph_run.h"
#include "cli/reports/rejected_rows.h"

namespace kelvarin {

// False where it could not be written: reported.
[[nodiscard]] bool writeRejects(RejectedRows& rows, const RunOptions& options, Console& console);

// Why a file of the reports cannot be used: it is one of the graph's, or could not be made. Empty
// where all can.
QString faultOfReportFiles(const Graph& graph, const ReportOptions& options);

}  // namespace kelvarin
