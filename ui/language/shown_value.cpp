#include "ui/language/shown_value.h"

#include "host/contract/column_bytes.h"

namespace kelvarin {

ShownValue shownValue(const ExpressionValue& value) {
  if (value.isNull()) {
    return shownNull();
  }
  switch (value.type) {
    case ExpressionValue::Type::number:
      return shownNumber(value.number);
    case ExpressionValue::Type::boolean: {
      const QString text = value.number != 0.0 ? QStringLiteral("true") : QStringLiteral("false");
      return {ShownValue::Kind::boolean, text, text};
    }
    case ExpressionValue::Type::text:
      break;
  }
  return shownText(value.text);
}

ShownValue shownValue(const PinRows& rows, std::size_t row, std::size_t column) {
  return shownBytes(rows.columns().columns[column].meta, rows.value(row, column));
}

ExpressionValue valueOfBytes(MetaTypeColumn meta, const unsigned char* bytes) {
  switch (meta) {
    case MetaTypeColumn::number:
      return ExpressionValue::ofNumber(numberFromBytes(bytes));
    case MetaTypeColumn::key: {
      const std::uint32_t key = keyFromBytes(bytes);
      return ExpressionValue::ofNumber(isNullKey(key) ? kNullNumber : key);
    }
    default:
      return isNullText(bytes) ? ExpressionValue::nullText()
                               : ExpressionValue::ofText(textFromBytes(bytes));
  }
}

}  // namespace kelvarin
