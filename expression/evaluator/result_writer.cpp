#include "expression/evaluator/result_writer.h"

#include <cstring>

#include "expression/evaluator/key_cast.h"

namespace kelvarin {

ResultWriter::Outcome ResultWriter::write(ResultSlot& slot, const EvaluatedValue& value,
                                          const KeyCast& keyCast) {
  if (slot.output->use == ResultUse::anyValue) {
    slot.value = valueOf(value);
    return Outcome::ok;
  }
  if (isNumberMeta(slot.output->meta)) {
    return writeNumber(slot, value, keyCast);
  }
  writeText(slot, value);
  return Outcome::ok;
}

ResultWriter::Outcome ResultWriter::writeNumber(ResultSlot& slot, const EvaluatedValue& value,
                                                const KeyCast& keyCast) {
  if (value.isText()) {
    writeNull(slot);
    return Outcome::textForNumber;
  }
  if (slot.output->meta == MetaTypeColumn::number) {
    std::memcpy(slot.cell, &value.number, sizeof value.number);
    return Outcome::ok;
  }
  std::uint32_t key = kNullKey;
  const bool isKey = castToKey(value.number, keyCast, key);
  std::memcpy(slot.cell, &key, sizeof key);
  return isKey ? Outcome::ok : Outcome::noKey;
}

void ResultWriter::writeText(ResultSlot& slot, const EvaluatedValue& value) {
  const bool isNull =
      value.isText() ? value.type == EvaluatedValue::Type::nullText : isNullNumber(value.number);
  if (isNull || slot.textTarget == nullptr) {
    writeNull(slot);
    return;
  }
  const std::string_view text = value.isText() ? value.text : m_printed.print(value.number);
  *slot.textTarget = bytesFromUtf8(&m_texts, text);
}

void ResultWriter::writeNull(ResultSlot& slot) {
  if (slot.output->meta == MetaTypeColumn::number) {
    std::memcpy(slot.cell, &kNullNumber, sizeof kNullNumber);
  } else if (slot.output->meta == MetaTypeColumn::key) {
    std::memcpy(slot.cell, &kNullKey, sizeof kNullKey);
  } else if (slot.textTarget != nullptr) {
    *slot.textTarget = bytesOfNullText();
  }
}

bool isTrueValue(const EvaluatedValue& value) {
  return value.isText() ? !value.text.empty() && value.type == EvaluatedValue::Type::text
                        : isTrueNumber(value.number);
}

}  // namespace kelvarin
