// Values of expressions and of rows as editors show them.
#pragma once

#include "expression/evaluator/expression_value.h"
#include "host/contract/pin_rows.h"
#include "host/contract/shown_value.h"

namespace kelvarin {

// Of a value in a row (column_bytes.h); the bytes may be null.
ExpressionValue valueOfBytes(MetaTypeColumn meta, const unsigned char* bytes);

ShownValue shownValue(const ExpressionValue& value);
ShownValue shownValue(const PinRows& rows, std::size_t row, std::size_t column);

}  // namespace kelvarin
