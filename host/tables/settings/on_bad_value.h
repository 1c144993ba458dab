// The attribute `onBadValue`: what becomes of a value that does not fit the type of its column.
//
// Used by: the actions that read and write table files with declared columns.
#pragma once

#include <sstream>

#include "host/contract/action_description.h"
#include "host/contract/attribute_table.h"
#include "host/tables/settings/messages.h"

namespace kelvarin::on_bad_value {

inline constexpr char16_t kAttribute[] = u"onBadValue";
inline const QString kAbort = QStringLiteral("abort");
inline const QString kNull = QStringLiteral("null");

inline AttributeDescription described(const QString& meaning) {
  return {QString::fromUtf16(kAttribute), AttributeKind::text, meaning, kAbort,
          AllowedValues{.inWords = "abort (stops the run) or null (makes it null)"}};
}

// Empty where there is none.
inline QString faultOf(const QString& value) {
  return value == kAbort || value == kNull ? QString() : table_messages::badOnBadValue(value);
}

inline void save(std::wostringstream& out, const QString& value) {
  if (value != kAbort) {
    writeAttribute(out, kAttribute, value);
  }
}

}  // namespace kelvarin::on_bad_value
