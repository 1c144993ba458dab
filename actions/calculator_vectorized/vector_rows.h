// The rows of a vectorized calculator: the outputs are evaluated once for each element, and each
// result has a column of its own.
#pragma once

#include <vector>

#include "actions/calculator/output_columns.h"
#include "actions/calculator/row_computation.h"

namespace kelvarin {

class VectorRows final : public RowComputation {
 public:
  VectorRows(ActionItem& action, RowEvaluation& evaluation, int outputCount, int elementCount,
             const OutputColumns& columns);

  bool compute(const OneRow& row) override {
    m_failures.clear();
    return computeRow<kAnyNumberWithFailures>(row);
  }
  ActionItem::ComputeRoutine routine() const override;

 private:
  // The current result of an output, and where the text of one goes.
  struct ElementResult {
    const unsigned char* cell = nullptr;  // of a number or key
    unsigned char* text = nullptr;
  };
  using NumberCell = double;  // or a key in its first bytes

  template <int kOutputs>
  [[nodiscard]] bool computeRow(const OneRow& row);
  void storeResults(int element, unsigned char** newColumns);

  int m_elementCount;
  std::vector<MetaTypeColumn> m_types;    // one an output
  std::vector<ElementResult> m_results;   // of the current element, one an output
  std::vector<NumberCell> m_numberCells;  // of the row, element by element
};

}  // namespace kelvarin
