// Arguments of functions in the form in which a plain function takes them: `const QString&` (16-bit
// units), `std::string_view` (UTF-8), `DateValue` (what a text says in the date format in force)
// and `double`.
//
// A text that is taken from a number is the number's shortest text. Columns have no QString.
// Used by: text_bodies.h.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <QString>

#include "base/null_number.h"
#include "expression/dates/clock_reading.h"
#include "expression/functions/column_call.h"
#include "expression/functions/function_context.h"
#include "expression/functions/function_values.h"

namespace kelvarin {

// One argument in the form in which a function takes it.
template <typename Parameter>
class ArgumentReader;

template <>
class ArgumentReader<double> {
 public:
  static constexpr bool kTakesText = false;
  ArgumentReader(const FunctionContext&, const FunctionArgument& argument)
      : m_number(argument.number()) {}
  double get() const { return m_number; }

 private:
  double m_number;
};

template <>
class ArgumentReader<QString> {
 public:
  static constexpr bool kTakesText = true;
  ArgumentReader(const FunctionContext&, const FunctionArgument& argument);
  const QString& get() const { return m_text; }

 private:
  QString m_text;
};

template <>
class ArgumentReader<std::string_view> {
 public:
  static constexpr bool kTakesText = true;
  ArgumentReader(const FunctionContext&, const FunctionArgument& argument);
  std::string_view get() const { return m_isNumber ? std::string_view(m_digits) : m_text; }

 private:
  bool m_isNumber;
  std::string m_digits;
  std::string_view m_text;
};

template <>
class ArgumentReader<DateValue> {
 public:
  static constexpr bool kTakesText = true;
  ArgumentReader(const FunctionContext& context, const FunctionArgument& argument);
  DateValue get() const { return m_date; }

 private:
  DateValue m_date;
};

// One column of arguments in the form in which a function takes its values.
template <typename Parameter>
class ColumnReader;

template <>
class ColumnReader<double> {
 public:
  static constexpr bool kTakesText = false;
  ColumnReader(const FunctionContext&, const ColumnArgument& argument)
      : m_numbers(argument.numbers) {}
  bool isNull(std::size_t row) const { return isNullNumber(m_numbers[row]); }
  double at(std::size_t row) const { return m_numbers[row]; }

 private:
  const double* m_numbers;
};

template <>
class ColumnReader<std::string_view> {
 public:
  static constexpr bool kTakesText = true;
  ColumnReader(const FunctionContext&, const ColumnArgument& argument) : m_texts(argument.texts) {}
  bool isNull(std::size_t row) const { return m_texts[row].isNull(); }
  std::string_view at(std::size_t row) const { return m_texts[row].view(); }

 private:
  const ColumnText* m_texts;
};

// A constant is read once.
template <>
class ColumnReader<DateValue> {
 public:
  static constexpr bool kTakesText = true;
  ColumnReader(const FunctionContext& context, const ColumnArgument& argument)
      : m_texts(argument.texts),
        m_dates(context.dates),
        m_isConstant(argument.isConstant),
        m_constant(m_isConstant ? m_dates.instantOf(m_texts[0].view()) : DateValue()) {}
  bool isNull(std::size_t row) const { return m_texts[row].isNull(); }
  DateValue at(std::size_t row) const {
    return m_isConstant ? m_constant : m_dates.instantOf(m_texts[row].view());
  }

 private:
  const ColumnText* m_texts;
  const DateContext& m_dates;
  const bool m_isConstant;
  const DateValue m_constant;
};

}  // namespace kelvarin
