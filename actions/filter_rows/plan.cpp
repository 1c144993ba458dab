// The filter at its first row: columns, variables, expression, and which routine takes the rows.
#include "actions/filter_rows/filter_rows.h"
#include "actions/filter_rows/sampling.h"
#include "host/contract/row_columns.h"

namespace kelvarin {

namespace {

// An empty expression keeps every row.
OutputVariable conditionOf(const QString& expression) {
  OutputVariable condition;
  condition.name = QStringLiteral("FilterRows");
  condition.expression = expression.trimmed().isEmpty() ? QStringLiteral("1") : expression;
  return condition;
}

}  // namespace

bool FilterRows::computeFirstRow(ActionItem* action) {
  auto& self = static_cast<FilterRows&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  const OneRow* columns = self.columnsToPlanFor(row);
  if (columns == nullptr) {
    return true;
  }
  self.buildOutputRows(*columns);
  if (!self.plan(*columns)) {
    self.failRun();
    return true;
  }
  if (row == nullptr) {
    return true;
  }
  if (self.isChecking()) {
    self.passToBoth(*row);
    return true;
  }
  return self.startRows(*row);
}

void FilterRows::buildOutputRows(const OneRow& columns) {
  for (int pin = 0; pin < outputPinCount(); ++pin) {
    copyColumns(columns, *getOutputRowForOutputPin(pin));
    announceColumnsOfOutputPin(pin);
  }
}

bool FilterRows::plan(const OneRow& columns) {
  if (m_settings.truncate) {
    m_sampleSize = sampleSizeOf(m_settings.expression).value_or(0);
  }
  if (isSampling()) {
    if (isObserved()) {
      startShowing(columns);
    }
    return true;
  }
  const OutputVariable condition = conditionOf(m_settings.expression);
  if (!startEvaluator(columns, m_inputs, {condition.expression}) ||
      !compileOutputs({condition}, ResultUse::truth)) {
    return false;
  }
  if (!isChecking() && !isObserved()) {
    m_stage = FilterStage::of(m_evaluator.expressions, {isOutputPinRead(0), isOutputPinRead(1)},
                              m_settings.truncate, run());
  }
  return true;
}

// The first row is processed here, and the routine for the others installed.
bool FilterRows::startRows(const OneRow& firstRow) {
  if (isObserved()) {
    computeRoutine = &FilterRows::computeObservedRow;
    const RowStep step = isSampling() ? sampleObservedRow(firstRow) : filterObservedRow(firstRow);
    return step != RowStep::more;
  }
  if (isSampling()) {
    computeRoutine = &FilterRows::computeSampledRow;
    return sampleRow(firstRow) != RowStep::more || m_sampleSize == 1;
  }
  if (m_settings.truncate) {
    computeRoutine = &FilterRows::computeRow<true>;
    return filterRow<true>(firstRow) != RowStep::more;
  }
  computeRoutine = &FilterRows::computeRow<false>;
  return filterRow<false>(firstRow) != RowStep::more;
}

}  // namespace kelvarin
