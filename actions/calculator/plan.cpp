// The calculator at its first row: variables, columns, expressions, and which routine takes the
// rows.
#include "actions/calculator/calculator.h"
#include "actions/calculator/variable_table.h"

namespace kelvarin {

bool Calculator::computeFirstRow(ActionItem* action) {
  auto& self = static_cast<Calculator&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  const OneRow* columns = self.columnsToPlanFor(row);
  if (columns == nullptr) {
    return true;
  }
  if (!self.plan(*columns)) {
    if (!self.hasRunEnded()) {
      self.failRun();
    }
    return true;
  }
  if (row == nullptr || self.isChecking()) {
    return true;
  }
  if (self.isObserved()) {
    self.computeRoutine = &Calculator::computeObservedRow;
    return self.evaluateObservedRow(*row) != RowStep::more;
  }
  self.computeRoutine = self.routineForRows();
  return self.evaluateRowOfAnyPlan(*row) != RowStep::more;
}

bool Calculator::plan(const OneRow& columns) {
  if (!readVariableTable()) {
    return false;
  }
  const std::vector<OutputVariable> outputs = outputsToCompile();
  const NewColumns newColumns = columnsOfOutputs(outputs);
  if (!newColumns) {
    logError(newColumns.error());
    return false;
  }
  QStringList expressions;
  for (const OutputVariable& output : outputs) {
    expressions += output.expression;
  }
  const bool isBound = startEvaluator(columns, m_variables, expressions, m_elementCount);
  const auto outputColumns = layOutColumns(columns, newColumns.value());
  if (!outputColumns) {
    logLayoutFault(outputColumns.error());
    return false;
  }
  // The columns are known even where an expression is wrong, so a check can go on below this
  // action.
  buildOutputRow(outputColumns.value());
  if (!isBound || !compileOutputs(outputs, ResultUse::column)) {
    return false;
  }
  if (!isChecking()) {
    connectResults(outputColumns.value());
    m_lookout.open(m_evaluator.batches.isPossible());
  }
  return true;
}

// The vectorized calculator has several columns an output.
void Calculator::logLayoutFault(const LayoutFault& fault) const {
  logAboutOutput(LogLevel::error, fault.text, static_cast<int>(fault.output % m_outputs.size()),
                 fault.explanation);
}

bool Calculator::readVariableTable() {
  if (isObserved()) {
    return true;
  }
  const auto read = appendVariableTable(*this, 1, m_variables);
  if (!read && !read.error().isEmpty()) {
    logError(read.error());
  }
  return static_cast<bool>(read);
}

Calculator::NewColumns Calculator::columnsOfOutputs(const std::vector<OutputVariable>& outputs) {
  return outputs;
}

// With graph parameters in the names replaced.
std::vector<OutputVariable> Calculator::outputsToCompile() const {
  std::vector<OutputVariable> outputs = m_outputs;
  for (OutputVariable& output : outputs) {
    output.name = expandString(output.name);
  }
  return outputs;
}

void Calculator::buildOutputRow(const OutputColumns& columns) {
  OneRow* row = getOutputRowForOutputPin(0);
  row->setNumberOfColumns(static_cast<int>(columns.names.size()));
  row->setColName(columns.names);
  row->setMetaData(columns.metas);
  row->setSortInfos(columns.sortOrder);
  announceColumnsOfOutputPin(0);
  m_columnOfOutput = columns.columnOfOutput;
}

// A new number's column points at its result for the whole run; texts are stored through their
// column's slot.
void Calculator::connectResults(const OutputColumns& columns) {
  unsigned char** places = getOutputRowForOutputPin(0)->getAllColForWrite();
  for (std::size_t i = 0; i < m_outputs.size(); ++i) {
    const int output = static_cast<int>(i);
    const int column = columns.columnOfOutput[i];
    if (!isNumeric(m_outputs[i])) {
      m_evaluator.rows.setTextTarget(output, &places[column]);
    } else if (m_outputs[i].update) {
      m_updatedNumbers.push_back({m_evaluator.rows.resultCell(output), column});
    } else {
      places[column] = m_evaluator.rows.resultCell(output);
    }
  }
}

}  // namespace kelvarin
