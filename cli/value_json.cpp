#include "cli/value_json.h"

#include "base/null_number.h"
#include "cli/reports/number_json.h"
#include "host/contract/one_row.h"

namespace kelvarin {

Json jsonOf(const ExpressionResult& result, bool& isSpecial) {
  isSpecial = false;
  if (result.isNull) {
    return nullptr;
  }
  if (result.type == MetaTypeColumn::text) {
    return result.text.toStdString();
  }
  isSpecial = !isFiniteNumber(result.number);
  return jsonOfNumber(result.number);
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
