// A date format taken apart into fields and the text between them.
//
// What DateReader and DatePrinter compile. Only forms that both QDateTime's parser and its printer
// take for the same are known: a letter repeated in another number, or two quotes in a row, make
// the format one that is left to QDateTime.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QString>

namespace kelvarin {

enum class DateField : std::uint8_t {
  literal,
  year,
  yearOfCentury,
  month,
  monthName,
  shortMonthName,
  day,
  weekdayName,
  shortWeekdayName,
  hour,
  hourOfHalfDay,
  minute,
  second,
  millisecond,
  halfDay,
  lowerHalfDay,
  zone
};

struct DateFormatPart {
  DateField field = DateField::literal;
  // Digits of a number; 1 stands for one or two. 0 for what is no number.
  std::uint8_t digits = 0;
  std::uint16_t start = 0;  // of a literal in DateFormatParts::literals
  std::uint16_t size = 0;
};

struct DateFormatParts {
  std::vector<DateFormatPart> parts;
  std::string literals;  // UTF-8

  std::string_view literalOf(const DateFormatPart& part) const {
    return std::string_view(literals).substr(part.start, part.size);
  }
};

// Nothing for a format with a form that is not known, or a long one.
std::optional<DateFormatParts> partsOfDateFormat(const QString& format);

}  // namespace kelvarin
