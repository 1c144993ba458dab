// The filter at every row.
#include "actions/filter_rows/filter_rows.h"

namespace kelvarin {

void FilterRows::passToBoth(const OneRow& row) {
  passTo(0, row);
  passTo(1, row);
}

// Where failed rows do not stop the run they are false, but for the first one: it shows that the
// expression is wrong.
ExpressionAction::RowStep FilterRows::evaluateRow(const OneRow& row, bool& isKept) {
  RowOutcome outcome = m_evaluator.rows.loadRow(row);
  if (outcome != RowOutcome::stop) [[likely]] {
    outcome = m_evaluator.rows.evaluateTruth(0, isKept);
  }
  const bool isFailure = outcome == RowOutcome::stop ||
                         (outcome == RowOutcome::failed && m_evaluator.rows.rowNumber() == 0.0);
  return isFailure ? failAtRow() : RowStep::more;
}

template <bool kTruncates>
ExpressionAction::RowStep FilterRows::filterRow(const OneRow& row) {
  bool isKept = false;
  if (const RowStep step = decideOnRow(row, isKept); step != RowStep::more) {
    return step;
  }
  passTo(isKept ? 0 : 1, row);
  m_evaluator.rows.advanceRow();
  if constexpr (kTruncates) {
    if (!isKept) {
      m_wasTruncated = true;
      return RowStep::finished;
    }
  }
  return RowStep::more;
}

template <bool kTruncates>
bool FilterRows::computeRow(ActionItem* action) {
  auto& self = static_cast<FilterRows&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  return row == nullptr || self.filterRow<kTruncates>(*row) != RowStep::more;
}

ExpressionAction::RowStep FilterRows::sampleRow(const OneRow& row) {
  ++m_rowsSampled;
  if (m_rowsSampled > m_sampleSize) {
    return RowStep::finished;
  }
  passTo(0, row);
  return RowStep::more;
}

bool FilterRows::computeSampledRow(ActionItem* action) {
  auto& self = static_cast<FilterRows&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  return row == nullptr || self.sampleRow(*row) != RowStep::more;
}

bool FilterRows::computeObservedRow(ActionItem* action) {
  auto& self = static_cast<FilterRows&>(*action);
  const OneRow* row = self.getNextRowFromInPin(0);
  return row == nullptr || self.filterObservedRow(*row) != RowStep::more;
}

ExpressionAction::RowStep FilterRows::filterObservedRow(const OneRow& row) {
  bool isKept = true;
  RowStep step = isSampling() ? sampleRow(row) : evaluateRow(row, isKept);
  if (step != RowStep::more) {
    return step;
  }
  if (!isSampling()) {
    passTo(isKept ? 0 : 1, row);
    m_evaluator.rows.advanceRow();
  }
  if (!showRow(row, {isKept ? QStringLiteral("true") : QStringLiteral("false")})) {
    return RowStep::finished;
  }
  m_wasTruncated = m_settings.truncate && !isKept;
  return m_wasTruncated || m_sampleSize == 1 ? RowStep::finished : RowStep::more;
}

template ExpressionAction::RowStep FilterRows::filterRow<true>(const OneRow& row);
template ExpressionAction::RowStep FilterRows::filterRow<false>(const OneRow& row);
template bool FilterRows::computeRow<true>(ActionItem* action);
template bool FilterRows::computeRow<false>(ActionItem* action);

}  // namespace kelvarin
