// What a clock shows, field by field.
//
// Between the readers and printers of dates and the readings that they make and print.
#pragma once

#include <optional>

#include "expression/dates/clock_reading.h"

namespace kelvarin {

// Fields that a date format leaves out keep what is here.
struct ClockFields {
  int year = 1900;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
};

// Nothing for a field out of its range; years begin with 1.
inline std::optional<ClockReading> readingOf(const ClockFields& fields) {
  constexpr int hours = 24;
  constexpr int sixty = 60;
  const auto isBelow = [](int number, int end) {
    return static_cast<unsigned>(number) < static_cast<unsigned>(end);
  };
  const bool isValid = fields.year > 0 && isBelow(fields.month - 1, kMonthsOfYear) &&
                       isBelow(fields.day - 1, daysInMonth(fields.year, fields.month)) &&
                       isBelow(fields.hour, hours) && isBelow(fields.minute, sixty) &&
                       isBelow(fields.second, sixty);
  if (!isValid) {
    return std::nullopt;
  }
  const int seconds = (fields.hour * sixty + fields.minute) * sixty + fields.second;
  return ClockReading::at(dayNumberOf({fields.year, fields.month, fields.day}),
                          seconds * 1000 + fields.millisecond);
}

// `timeOfDay` in milliseconds.
inline ClockFields fieldsOf(const CivilDay& day, std::int64_t timeOfDay) {
  const auto milliseconds = static_cast<unsigned>(timeOfDay);
  const unsigned seconds = milliseconds / 1000;
  const unsigned minutes = seconds / 60;
  ClockFields fields;
  fields.year = day.year;
  fields.month = day.month;
  fields.day = day.day;
  fields.hour = static_cast<int>(minutes / 60);
  fields.minute = static_cast<int>(minutes % 60);
  fields.second = static_cast<int>(seconds % 60);
  fields.millisecond = static_cast<int>(milliseconds % 1000);
  return fields;
}

}  // namespace kelvarin
