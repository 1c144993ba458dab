// The filter at every row.
#include "actions/filter_rows/filter_rows.h"

namespace kelvarin {

void FilterRows::passToBoth(const OneRow& row) {
  passTo(0, row);
  passTo(1, row);
}

// Where failed rows do not stop the run they are false, but for the first one: it shows that the
// expression is wrong.
RowOutcome FilterRows::evaluateRow(const OneRow& row, bool& isKept) {
  RowOutcome outcome = m_evaluator.rows.loadRow(row);
  if (outcome != RowOutcome::stop) [[likely]] {
    outcome = m_evaluator.rows.evaluateTruth(0, isKept);
  }
  const bool isFirstOne = m_evaluator.rows.rowNumber() == 0.0;
  return outcome == RowOutcome::failed && isFirstOne ? RowOutcome::stop : outcome;
}

template <bool kTruncates>
ExpressionAction::RowStep FilterRows::filterRow(const OneRow& row) {
  bool isKept = false;
  if (evaluateRow(row, isKept) == RowOutcome::stop) [[unlikely]] {
    return failAtRow();
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
  if (row == nullptr) {
    return true;
  }
  const RowStep step =
      self.isSampling() ? self.sampleObservedRow(*row) : self.filterObservedRow(*row);
  return step != RowStep::more;
}

namespace {

ExpressionValue resultOf(bool isKept) {
  return {ExpressionValue::Type::boolean, isKept ? 1.0 : 0.0, {}};
}

}  // namespace

QStringList FilterRows::resultNames() {
  return {QString::fromLatin1(catalogue().typeName)};
}

ExpressionAction::RowStep FilterRows::filterObservedRow(const OneRow& row) {
  bool isKept = false;
  const RowOutcome outcome = evaluateRow(row, isKept);
  ObservedRow& shown = observedRow(row);
  if (outcome != RowOutcome::ok) {
    shown.failures.push_back(observedFailure(m_evaluator.rows.lastFailure()));
  }
  if (outcome == RowOutcome::stop) {
    showLastRow(shown);
    return failAtRow();
  }
  shown.results.push_back(resultOf(isKept));
  passTo(isKept ? 0 : 1, row);
  m_evaluator.rows.advanceRow();
  if (!showRow(shown)) {
    return RowStep::finished;
  }
  m_wasTruncated = m_settings.truncate && !isKept;
  return m_wasTruncated ? RowStep::finished : RowStep::more;
}

// Nothing is evaluated, but there are values to show.
ExpressionAction::RowStep FilterRows::sampleObservedRow(const OneRow& row) {
  if (const RowStep step = sampleRow(row); step != RowStep::more) {
    return step;
  }
  m_evaluator.rows.passRow();
  ObservedRow& shown = observedRow(row);
  shown.number = static_cast<long long>(m_rowsSampled) - 1;
  shown.isEvaluated = false;
  shown.results.push_back(resultOf(true));
  return showRow(shown) && m_sampleSize > 1 ? RowStep::more : RowStep::finished;
}

template ExpressionAction::RowStep FilterRows::filterRow<true>(const OneRow& row);
template ExpressionAction::RowStep FilterRows::filterRow<false>(const OneRow& row);
template bool FilterRows::computeRow<true>(ActionItem* action);
template bool FilterRows::computeRow<false>(ActionItem* action);

}  // namespace kelvarin
