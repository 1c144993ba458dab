#include "actions/calculator_vectorized/vector_rows.h"

#include <cstring>

#include "actions/calculator/calculator.h"

namespace kelvarin {

// The columns of numbers point at their cells for the whole run; texts are stored through their
// column's slot.
VectorRows::VectorRows(ActionItem& action, ExpressionEvaluator& evaluator, int elementCount,
                       const OutputColumns& columns)
    : RowComputation(action, evaluator),
      m_elementCount(elementCount),
      m_results(static_cast<std::size_t>(evaluator.outputCount())),
      m_numberCells(columns.columnOfOutput.size(), kNullNumber) {
  for (std::size_t i = 0; i < m_results.size(); ++i) {
    const int output = static_cast<int>(i);
    if (columns.metas[columns.columnOfOutput[i]].type() == MetaTypeColumn::text) {
      m_evaluator.setTextTarget(output, &m_results[i].text);
    } else {
      m_results[i].cell = m_evaluator.resultCell(output);
    }
  }
  for (std::size_t i = 0; i < m_numberCells.size(); ++i) {
    if (m_results[i % m_results.size()].cell != nullptr) {
      m_columns[columns.columnOfOutput[i]] = reinterpret_cast<unsigned char*>(&m_numberCells[i]);
    }
  }
  m_evaluator.nameElements(columns.names.last(static_cast<qsizetype>(m_numberCells.size())));
}

template <int kOutputs>
bool VectorRows::computeRow(const OneRow& row) {
  passColumnsOn(row);
  if (m_evaluator.loadRow(row) == RowOutcome::stop) {
    return false;
  }
  unsigned char** newColumns = m_columns + row.sz();
  for (int element = 0; element < m_elementCount; ++element) {
    if (element > 0 && m_evaluator.loadElement(row, element) == RowOutcome::stop) {
      return false;
    }
    if (!evaluateOutputs<kOutputs>()) {
      return false;
    }
    storeResults(element, newColumns);
  }
  return true;
}

void VectorRows::storeResults(int element, unsigned char** newColumns) {
  std::size_t column = static_cast<std::size_t>(element) * m_results.size();
  for (const ElementResult& result : m_results) {
    if (result.cell != nullptr) {
      std::memcpy(&m_numberCells[column], result.cell, sizeof(NumberCell));
    } else {
      newColumns[column] = result.text;
    }
    ++column;
  }
}

ActionItem::ComputeRoutine VectorRows::routine() const {
  using Rows = VectorRows;
  static constexpr ActionItem::ComputeRoutine kRoutines[] = {
      &Calculator::computeRow<Rows, &Rows::computeRow<kAnyNumber>>,
      &Calculator::computeRow<Rows, &Rows::computeRow<1>>,
      &Calculator::computeRow<Rows, &Rows::computeRow<2>>,
      &Calculator::computeRow<Rows, &Rows::computeRow<3>>};
  return kRoutines[m_results.size() <= 3 ? m_results.size() : kAnyNumber];
}

}  // namespace kelvarin
