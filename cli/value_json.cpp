#include "cli/value_json.h"

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

Json jsonOf(const ExpressionResult& result, bool& isSpecial) {
  isSpecial = false;
  if (result.isNull) {
    return nullptr;
  }
  if (result.type == MetaTypeColumn::text) {
    return result.text.toStdString();
  }
  if (!isFiniteNumber(result.number)) {
    isSpecial = true;
    return plainText(result).toStdString();
  }
  if (isPlainWhole(result.number)) {
    return static_cast<long long>(result.number);
  }
  return result.number;
}

QString plainText(const ExpressionResult& result) {
  if (result.isNull) {
    return QStringLiteral("null");
  }
  return result.type == MetaTypeColumn::text ? result.text : shortestText(result.number);
}

const char* typeWord(MetaTypeColumn type) {
  switch (type) {
    case MetaTypeColumn::number:
      return "number";
    case MetaTypeColumn::key:
      return "key";
    default:
      return "text";
  }
}

}  // namespace kelvarin
