// Makes text columns of arrays of the Arrow library.
//
// Texts come as they are; integers and decimals with all digits; dates and timestamps in ISO 8601,
// in a form that the column's type alone decides.
#pragma once

#include <QString>

#include "arrow/type.h"
#include "host/tables/arrow_formats/array_source.h"

namespace kelvarin {

// Null for a type of values that cannot be texts.
ArrayConversion textConversionOf(arrow::Type::type type);

// How the timestamps of one type are written.
struct TimestampForm {
  int decimals;  // of the seconds: 0, 3, 6 or 9
  bool isUtc;    // the texts end in Z

  static TimestampForm of(const arrow::TimestampType& type);
  // A text of this form.
  QString example() const;
  // What reads the texts as dates; digits below the millisecond are dropped by the reader.
  QString dateFormat() const;
};

}  // namespace kelvarin
