// Functions on elapsed times, which are numbers of whole units since the reference instant.

#include <array>
#include <cmath>

#include "expression/functions/calendar_steps.h"
#include "expression/functions/dates_printed.h"
#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

using Arguments = std::span<const FunctionArgument>;

double elapsedOfText(FunctionContext& context, DateValue date) {
  return context.dates.toElapsedTime(date);
}

double elapsedFractionOfText(FunctionContext& context, DateValue date) {
  return context.dates.toElapsedFraction(date);
}

// An empty date is not always null, so the null text is passed on, too.
template <auto function>
void bodyWithNulls(FunctionContext& context, Arguments arguments, FunctionResult& result) {
  BodyOf<function>::call(context, arguments, result);
}

template <auto function>
constexpr FunctionBody kBodiesWithNulls{
    bodyWithNulls<function>,
    ColumnBody{columnsWithNulls<function>, ColumnsOf<function>::textArguments()}};

ColumnText textOfElapsed(FunctionContext& context, TextArena& arena, double elapsed) {
  return printedDate(arena, context.dates, dateOfElapsed(context.dates, elapsed));
}

double addToElapsed(FunctionContext& context, double elapsed, double years, double months,
                    double days) {
  const DateContext& dates = context.dates;
  return elapsedOfDate(dates,
                       withAdded(dates.zone(), dateOfElapsed(dates, elapsed), years, months, days));
}

using Property = double (*)(const ClockZone&, DateValue);
using Difference = double (*)(const ClockZone&, DateValue, DateValue);

template <Property property>
double propertyOf(FunctionContext& context, double elapsed) {
  return property(context.dates.zone(), dateOfElapsed(context.dates, elapsed));
}

template <Difference difference>
double between(FunctionContext& context, double from, double to) {
  return difference(context.dates.zone(), dateOfElapsed(context.dates, from),
                    dateOfElapsed(context.dates, to));
}

double firstWeekdayAsElapsed(FunctionContext& context, double year, double dayOfWeek) {
  const DateContext& dates = context.dates;
  return elapsedOfDate(dates, firstWeekdayOfYear(dates.zone(), year, dayOfWeek));
}

// kept: every fourth year has a 29 February, 1900 and 2100 too, and a month 0 has no days.
double daysInMonth(double month, double year) {
  constexpr std::array<int, 13> days = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  constexpr int february = 2;
  const double index = std::trunc(month);
  if (isNullNumber(year) || !(index >= 0 && index < static_cast<double>(days.size()))) {
    return kNullNumber;
  }
  const bool isLeap = std::fmod(std::trunc(year), 4.0) == 0.0;
  return index == february && isLeap ? 29.0 : days[static_cast<std::size_t>(index)];
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"nDaysInMonth", 2, kFastAndString, kNumber, daysInMonth,
     "nDaysInMonth(month,year) - return the number of days in the given month;"},
    {"toET", 1, kFastAndString, kNumber, kBodiesWithNulls<elapsedOfText>,
     "toET(date) - convert a date (as a string) to an Elapsed Time", kReferenceAndFormat},
    {"toETF", 1, kInString, kNumber, kBodiesWithNulls<elapsedFractionOfText>,
     "toETF(date) - convert a date (as a string) to an Elapsed Time (as a "
     "float)", kReferenceAndFormat},
    {"toDate", 1, kInString, kText, valueBodies<textOfElapsed>,
     "toDate(ET) - convert a date (as an Elapsed Time) to a string", kReferenceAndFormat},
    {"etAdd", 4, kFastAndString, kNumber, addToElapsed,
     "etAdd(ET,y,M,d) - add a duration (in year, month and days) to an Elapsed Time", kReference},
    {"etFirstDayOfYear", 2, kFastAndString, kNumber, firstWeekdayAsElapsed,
     "etFirstDayOfYear(y,dow) - et of the first DayOfWeek(dow) of the year(y)", kReference},
    {"etWeekNumber", 1, kFastAndString, kNumber, propertyOf<isoWeek>,
     "etWeekNumber(x) - Returns the week number (1 to 53)", kReference},
    {"etDayOfWeek", 1, kFastAndString, kNumber, propertyOf<weekday>,
     "etDayOfWeek(et) - Returns the Day of Week(0=monday; 6=sunday)", kReference},
    {"etDiffInMonth", 2, kFastAndString, kNumber, between<monthsBetween>,
     "etDiffInMonth(x,y) - number of months between x and y", kReference},
    {"etDiffInYear", 2, kFastAndString, kNumber, between<yearsBetween>,
     "etDiffInYear(x,y) - number of years between x and y", kReference},
};
// clang-format on

static_assert(areSound(kLines));

}  // namespace

std::span<const FunctionLine> elapsedTimes() {
  return kLines;
}

}  // namespace kelvarin
