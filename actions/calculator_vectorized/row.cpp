// The vectorized calculator at every row: the calculator's row, once for each element.
#include <cstring>

#include "actions/calculator_vectorized/calculator_vectorized.h"

namespace kelvarin {

template <int kOutputs>
ExpressionAction::RowStep CalculatorVectorized::evaluateRow(const OneRow& row) {
  unsigned char** newColumns = passColumnsOn(row) + row.sz();
  if (m_evaluator.rows.loadRow(row) == RowOutcome::stop) {
    return failAtRow();
  }
  for (int element = 0; element < m_elementCount; ++element) {
    if (element > 0 && m_evaluator.rows.loadElement(row, element) == RowOutcome::stop) {
      return failAtRow();
    }
    if (!evaluateOutputs<kOutputs>()) {
      return failAtRow();
    }
    storeResults(element, newColumns);
  }
  return publishRow();
}

void CalculatorVectorized::storeResults(int element, unsigned char** newColumns) {
  std::size_t place = static_cast<std::size_t>(element) * m_results.size();
  for (const ElementResult& result : m_results) {
    if (result.cell != nullptr) {
      std::memcpy(&m_numberCells[place], result.cell, sizeof(NumberCell));
    } else {
      newColumns[place] = result.text;
    }
    ++place;
  }
}

template <int kOutputs>
bool CalculatorVectorized::computeRow(ActionItem* action) {
  auto& self = static_cast<CalculatorVectorized&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  return row == nullptr || self.evaluateRow<kOutputs>(*row) != RowStep::more;
}

ActionItem::ComputeRoutine CalculatorVectorized::routineForRows() const {
  static constexpr ComputeRoutine kRoutines[] = {&computeRow<kAnyNumber>, &computeRow<1>,
                                                 &computeRow<2>, &computeRow<3>};
  return kRoutines[m_outputs.size() <= 3 ? m_outputs.size() : kAnyNumber];
}

ExpressionAction::RowStep CalculatorVectorized::evaluateRowOfAnyPlan(const OneRow& row) {
  return evaluateRow<kAnyNumber>(row);
}

}  // namespace kelvarin
