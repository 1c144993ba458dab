// The decimals of an array as plain text, all digits and no exponent: "-123.450" of three decimals.
#pragma once

#include <algorithm>
#include <string>

#include "arrow/array/array_decimal.h"
#include "arrow/type.h"
#include "arrow/util/decimal.h"

namespace kelvarin {

template <typename Array>
struct DecimalOf;
template <>
struct DecimalOf<arrow::Decimal32Array> {
  using Type = arrow::Decimal32;
};
template <>
struct DecimalOf<arrow::Decimal64Array> {
  using Type = arrow::Decimal64;
};
template <>
struct DecimalOf<arrow::Decimal128Array> {
  using Type = arrow::Decimal128;
};
template <>
struct DecimalOf<arrow::Decimal256Array> {
  using Type = arrow::Decimal256;
};

template <typename Array>
class DecimalTexts {
 public:
  explicit DecimalTexts(const arrow::Array& values)
      : m_values(static_cast<const Array&>(values)),
        m_scale(static_cast<const arrow::DecimalType&>(*values.type()).scale()) {}

  // How many digits a text has after its point.
  int decimals() const { return std::max(m_scale, 0); }

  std::string at(std::int64_t position) const {
    using Decimal = typename DecimalOf<Array>::Type;
    std::string text = Decimal(m_values.GetValue(position)).ToIntegerString();
    if (m_scale <= 0) {
      return text == "0" ? text : text.append(static_cast<std::size_t>(-m_scale), '0');
    }
    const std::size_t sign = text[0] == '-' ? 1 : 0;
    const auto scale = static_cast<std::size_t>(m_scale);
    if (text.size() - sign <= scale) {
      text.insert(sign, scale + 1 - (text.size() - sign), '0');
    }
    return text.insert(text.size() - scale, 1, '.');
  }

 private:
  const Array& m_values;
  int m_scale;
};

}  // namespace kelvarin
