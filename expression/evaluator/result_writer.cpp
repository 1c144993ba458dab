#include "expression/evaluator/result_writer.h"

#include <cstring>

#include "expression/evaluator/key_cast.h"

namespace kelvarin {

namespace {

ExpressionValue valueOf(const EvaluatedValue& value) {
  switch (value.type) {
    case EvaluatedValue::Type::number:
      return {ExpressionValue::Type::number, value.number, {}};
    case EvaluatedValue::Type::boolean:
      return {ExpressionValue::Type::boolean, value.number, {}};
    case EvaluatedValue::Type::nullText:
      return {ExpressionValue::Type::text, kNullNumber, {}};
    case EvaluatedValue::Type::text:
      break;
  }
  const QString text =
      QString::fromUtf8(value.text.data(), static_cast<qsizetype>(value.text.size()));
  return {ExpressionValue::Type::text, kNullNumber, text.isNull() ? QStringLiteral("") : text};
}

}  // namespace

ResultWriter::Outcome ResultWriter::write(ExpressionOutput& output, const EvaluatedValue& value,
                                          const KeyCast& keyCast) {
  if (output.use == ResultUse::anyValue) {
    output.value = valueOf(value);
    return Outcome::ok;
  }
  if (isNumberMeta(output.meta)) {
    return writeNumber(output, value, keyCast);
  }
  writeText(output, value);
  return Outcome::ok;
}

ResultWriter::Outcome ResultWriter::writeNumber(ExpressionOutput& output,
                                                const EvaluatedValue& value,
                                                const KeyCast& keyCast) {
  if (value.isText()) {
    writeNull(output);
    return Outcome::textForNumber;
  }
  if (output.meta == MetaTypeColumn::number) {
    std::memcpy(output.cell, &value.number, sizeof value.number);
    return Outcome::ok;
  }
  std::uint32_t key = kNullKey;
  const bool isKey = castToKey(value.number, keyCast, key);
  std::memcpy(output.cell, &key, sizeof key);
  return isKey ? Outcome::ok : Outcome::noKey;
}

void ResultWriter::writeText(ExpressionOutput& output, const EvaluatedValue& value) {
  const bool isNull =
      value.isText() ? value.type == EvaluatedValue::Type::nullText : isNullNumber(value.number);
  if (isNull || output.textTarget == nullptr) {
    writeNull(output);
    return;
  }
  const std::string_view text = value.isText() ? value.text : m_printed.print(value.number);
  *output.textTarget = bytesFromUtf8(&m_texts, text);
}

void ResultWriter::writeNull(ExpressionOutput& output) {
  if (output.meta == MetaTypeColumn::number) {
    std::memcpy(output.cell, &kNullNumber, sizeof kNullNumber);
  } else if (output.meta == MetaTypeColumn::key) {
    std::memcpy(output.cell, &kNullKey, sizeof kNullKey);
  } else if (output.textTarget != nullptr) {
    *output.textTarget = bytesOfNullText();
  }
}

bool isTrueValue(const EvaluatedValue& value) {
  return value.isText() ? !value.text.empty() && value.type == EvaluatedValue::Type::text
                        : isTrueNumber(value.number);
}

}  // namespace kelvarin
