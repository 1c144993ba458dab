// The columns of a calculator's output row: those of the input, some of them updated, and the new
// ones after them.
//
// Errors: LayoutFault.
#pragma once

#include <vector>

#include <QString>
#include <QVector>

#include "base/result.h"
#include "expression/evaluator/variables.h"
#include "host/contract/one_row.h"

namespace kelvarin {

struct OutputColumns {
  QVector<QString> names;
  QVector<MetaInfo> metas;
  QVector<SortInfos> sortOrder;
  std::vector<int> columnOfOutput;
};

// Why there can be no such row.
struct LayoutFault {
  QString text;         // to log
  std::size_t output;   // at fault
  QString explanation;  // to log after it
};

// `outputs` have their names expanded.
Result<OutputColumns, LayoutFault> layOutColumns(const OneRow& input,
                                                 const std::vector<OutputVariable>& outputs);

bool isNumeric(const OutputVariable& output);

}  // namespace kelvarin
