#include "actions/calculator_vectorized/vector_rows.h"

#include <cstring>

#include "actions/calculator/calculator.h"

namespace kelvarin {

// The columns of numbers point at their cells for the whole run; texts are stored through their
// column's slot.
VectorRows::VectorRows(ActionItem& action, RowEvaluation& evaluation, int outputCount,
                       int elementCount, const OutputColumns& columns)
    : RowComputation(action, evaluation, outputCount),
      m_elementCount(elementCount),
      m_results(static_cast<std::size_t>(outputCount)),
      m_numberCells(columns.columnOfOutput.size(), kNullNumber) {
  for (std::size_t i = 0; i < m_results.size(); ++i) {
    const int output = static_cast<int>(i);
    m_types.push_back(columns.metas[columns.columnOfOutput[i]].type());
    if (m_types.back() == MetaTypeColumn::text) {
      m_evaluation.setTextTarget(output, &m_results[i].text);
    } else {
      m_results[i].cell = m_evaluation.resultCell(output);
    }
  }
  for (std::size_t i = 0; i < m_numberCells.size(); ++i) {
    if (m_results[i % m_results.size()].cell != nullptr) {
      m_columns[columns.columnOfOutput[i]] = reinterpret_cast<unsigned char*>(&m_numberCells[i]);
    }
  }
  m_evaluation.nameElements(columns.names.last(static_cast<qsizetype>(m_numberCells.size())));
}

template <int kOutputs>
bool VectorRows::computeRow(const OneRow& row) {
  passColumnsOn(row);
  if (m_evaluation.loadRow(row) == RowOutcome::stop) {
    return false;
  }
  unsigned char** newColumns = m_columns + row.sz();
  for (int element = 0; element < m_elementCount; ++element) {
    if (element > 0 && m_evaluation.loadElement(row, element) == RowOutcome::stop) {
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
    const std::size_t output = column % m_results.size();
    if (!m_counts.empty()) [[unlikely]] {
      m_counts[output].add(m_types[output], result.cell != nullptr ? result.cell : result.text);
    }
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
  return kRoutines[m_outputCount <= 3 ? m_outputCount : kAnyNumber];
}

}  // namespace kelvarin
