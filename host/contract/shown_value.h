// A value as windows show it: so that null, NaN, an empty text and blanks at the ends differ in
// more than their colour.
//
// Used by editors and previews; the texts are those that the program prints, but for the marks.
#pragma once

#include <QString>

#include "base/export.h"
#include "host/contract/meta_info.h"

namespace kelvarin {

struct ShownValue {
  enum class Kind { number, boolean, text, null, notANumber, emptyText };
  Kind kind = Kind::null;
  QString text;   // for one line: "null", "NaN", "(empty)", blanks at the ends as middle dots
  QString whole;  // for a tool tip and for copying: all digits, the whole text, nothing marked
  bool isMarked() const {
    return kind == Kind::null || kind == Kind::notANumber || kind == Kind::emptyText;
  }
};

KELVARIN_CORE ShownValue shownNull();
// The missing value is a number here as everywhere.
KELVARIN_CORE ShownValue shownNumber(double number);
KELVARIN_CORE ShownValue shownText(const QString& text);
// Of a value in a row (column_bytes.h); the bytes may be null.
KELVARIN_CORE ShownValue shownBytes(MetaTypeColumn meta, const unsigned char* bytes);

}  // namespace kelvarin
