#include "ui/debugger/debug_rules.h"

#include <algorithm>
#include <cmath>

namespace kelvarin {

namespace {

// The null number is a NaN, too.
bool isMissing(const ExpressionValue& value) {
  return value.type == ExpressionValue::Type::text ? value.isNull() : std::isnan(value.number);
}

}  // namespace

StopReason stopReason(const DebugRules& rules, const ObservedRow& row) {
  if (row.isLast) {
    return StopReason::lastRow;
  }
  if (rules.row == row.number) {
    return StopReason::row;
  }
  if (rules.atFailure && !row.failures.empty()) {
    return StopReason::failure;
  }
  if (rules.atNull && std::any_of(row.results.begin(), row.results.end(), isMissing)) {
    return StopReason::null;
  }
  return rules.everyRow ? StopReason::step : StopReason::none;
}

}  // namespace kelvarin
