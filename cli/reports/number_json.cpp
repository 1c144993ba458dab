#include "cli/reports/number_json.h"

#include <cmath>

#include "base/null_number.h"
#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

// Whole numbers are printed without a fraction where the double holds every neighbour.
constexpr double kWholeNumbersEnd = 9007199254740992.0;

bool isPlainWhole(double number) {
  return std::fabs(number) < kWholeNumbersEnd && number == std::trunc(number) &&
         !(number == 0.0 && std::signbit(number));
}

}  // namespace

Json jsonOfNumber(double number) {
  if (isNullNumber(number)) {
    return nullptr;
  }
  if (!isFiniteNumber(number)) {
    return shortestText(number).toStdString();
  }
  return isPlainWhole(number) ? Json(static_cast<long long>(number)) : Json(number);
}

}  // namespace kelvarin
