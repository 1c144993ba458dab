// The rows of a calculator: each output is evaluated once a row and fills one column.
#pragma once

#include <vector>

#include "actions/calculator/output_columns.h"
#include "actions/calculator/row_computation.h"

namespace kelvarin {

class ScalarRows final : public RowComputation {
 public:
  ScalarRows(ActionItem& action, RowEvaluation& evaluation,
             const std::vector<OutputVariable>& outputs, const OutputColumns& columns);

  bool compute(const OneRow& row) override {
    m_failures.clear();
    return computeRow<kAnyNumberWithFailures, true>(row);
  }
  ActionItem::ComputeRoutine routine() const override;

 private:
  // A number that updates a column: the column points at the value of the input row until it is set
  // to the result.
  struct UpdatedNumber {
    unsigned char* result;
    int column;
  };

  template <int kOutputs, bool kUpdatesNumbers>
  [[nodiscard]] bool computeRow(const OneRow& row);

  std::vector<int> m_columnOfOutput;
  std::vector<MetaTypeColumn> m_typeOfOutput;
  std::vector<UpdatedNumber> m_updatedNumbers;
};

}  // namespace kelvarin
