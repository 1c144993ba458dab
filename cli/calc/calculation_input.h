// The columns of the table that a calculation reads, known before its graph is made.
//
// Used by: calc_command.cpp.
#pragma once

#include <vector>

#include <QString>

#include "base/result.h"
#include "cli/calc/calc_log.h"
#include "cli/gel/table_conversion.h"
#include "host/contract/pin_columns.h"

namespace kelvarin {

// `source` is the element of the conversion's source. Found by a check of it, so that no more is
// read than types are inferred from. The error is the status with which the command ends; the log
// has said why.
Result<std::vector<PinColumns::Column>, ExitStatus> columnsOfInput(
    const TableConversion& conversion, const QString& source, const ActionCatalogue& catalogue,
    Console& console, CalcLog& log);

}  // namespace kelvarin
