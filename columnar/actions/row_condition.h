// Whether a row is to be written: its test column has the test value.
//
// A text equals the value byte by byte; a number or key equals it when the whole value is that
// number. An empty value stands for missing values and the empty text.
// Used by writeColumnarGel.
#pragma once

#include <optional>
#include <string>

#include "host/contract/one_row.h"

namespace kelvarin {

class RowCondition {
 public:
  RowCondition(const OneRow& columns, int column, const QString& value);

  bool passes(const OneRow& row) const;

 private:
  const int m_column;
  const bool m_isText;
  const std::string m_text;
  std::optional<double> m_number;
};

}  // namespace kelvarin
