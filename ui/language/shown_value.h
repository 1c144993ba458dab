// A value as editors show it: as the program prints it, and so that null, NaN, an empty text and
// blanks at the ends differ in more than their colour.
#pragma once

#include <QString>

#include "expression/evaluator/expression_value.h"
#include "host/contract/pin_rows.h"

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

// Of a value in a row (column_bytes.h); the bytes may be null.
ExpressionValue valueOfBytes(MetaTypeColumn meta, const unsigned char* bytes);

ShownValue shownValue(const ExpressionValue& value);
ShownValue shownValue(const PinRows& rows, std::size_t row, std::size_t column);

}  // namespace kelvarin
