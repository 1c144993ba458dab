#include "host/tables/arrow/iso_time.h"

#include <algorithm>
#include <iterator>

#include <fmt/compile.h>
#include <fmt/format.h>

#include <QHash>
#include <QMap>

#include "host/tables/arrow/value_messages.h"
#include "host/tables/settings/column_settings.h"

namespace kelvarin {

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t kDaysFromMarchOfYearZero = 719468;
constexpr std::int64_t kDaysPerEra = 146097;

struct Quotient {
  std::int64_t quotient;
  std::int64_t remainder;  // never negative
};

Quotient divideDown(std::int64_t value, std::int64_t divisor) {
  Quotient result{value / divisor, value % divisor};
  if (result.remainder < 0) {
    --result.quotient;
    result.remainder += divisor;
  }
  return result;
}

std::int64_t ticksPerSecondOf(int digits) {
  std::int64_t ticks = 1;
  for (int i = 0; i < digits; ++i) {
    ticks *= 10;
  }
  return ticks;
}

}  // namespace

// Years are counted from March, in eras of 400 years, so that the leap day is the last of its year.
void appendIsoDate(std::string& text, std::int64_t daysSinceEpoch) {
  const Quotient era = divideDown(daysSinceEpoch + kDaysFromMarchOfYearZero, kDaysPerEra);
  const std::int64_t dayOfEra = era.remainder;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
  const std::int64_t day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
  const std::int64_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  const std::int64_t year = yearOfEra + era.quotient * 400 + (month <= 2 ? 1 : 0);
  if (year < 0) {
    fmt::format_to(std::back_inserter(text), FMT_COMPILE("-{:04}-{:02}-{:02}"), -year, month, day);
    return;
  }
  // Years of more than four digits carry a sign.
  fmt::format_to(std::back_inserter(text), FMT_COMPILE("{}{:04}-{:02}-{:02}"),
                 year > 9999 ? "+" : "", year, month, day);
}

void appendIsoTimestamp(std::string& text, std::int64_t ticksSinceEpoch, int digits, bool isUtc) {
  const Quotient seconds = divideDown(ticksSinceEpoch, ticksPerSecondOf(digits));
  const Quotient days = divideDown(seconds.quotient, kSecondsPerDay);
  appendIsoDate(text, days.quotient);
  const std::int64_t second = days.remainder;
  fmt::format_to(std::back_inserter(text), FMT_COMPILE("T{:02}:{:02}:{:02}"), second / 3600,
                 second / 60 % 60, second % 60);
  if (digits > 0) {
    fmt::format_to(std::back_inserter(text), FMT_COMPILE(".{:0{}}"), seconds.remainder, digits);
  }
  if (isUtc) {
    text += 'Z';
  }
}

namespace {

// Takes a number of so many digits from the front of a text.
bool takeNumber(std::string_view& text, std::size_t digits, std::int64_t& number) {
  if (text.size() < digits) {
    return false;
  }
  number = 0;
  for (const char digit : text.substr(0, digits)) {
    if (digit < '0' || digit > '9') {
      return false;
    }
    number = 10 * number + (digit - '0');
  }
  text.remove_prefix(digits);
  return true;
}

bool take(std::string_view& text, char character) {
  if (!text.starts_with(character)) {
    return false;
  }
  text.remove_prefix(1);
  return true;
}

int daysOfMonth(std::int64_t year, std::int64_t month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return kDays[month - 1] + (month == 2 && isLeapYear ? 1 : 0);
}

// The inverse of appendIsoDate().
std::int64_t daysOf(std::int64_t year, std::int64_t month, std::int64_t day) {
  const std::int64_t yearFromMarch = month <= 2 ? year - 1 : year;
  const Quotient era = divideDown(yearFromMarch, 400);
  const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const std::int64_t yearOfEra = era.remainder;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era.quotient * kDaysPerEra + dayOfEra - kDaysFromMarchOfYearZero;
}

// Takes a date from the front of a text. Years of more than four digits carry a sign.
bool takeDate(std::string_view& text, std::int64_t& days) {
  constexpr std::size_t kMaxYearDigits = 7;
  const bool isNegative = take(text, '-');
  const bool isSigned = isNegative || take(text, '+');
  const std::size_t digits = isSigned ? std::min(text.find('-'), kMaxYearDigits + 1) : 4;
  std::int64_t year;
  std::int64_t month;
  std::int64_t day;
  if (digits < 4 || digits > kMaxYearDigits || !takeNumber(text, digits, year) ||
      !take(text, '-') || !takeNumber(text, 2, month) || !take(text, '-') ||
      !takeNumber(text, 2, day)) {
    return false;
  }
  year = isNegative ? -year : year;
  if (month < 1 || month > 12 || day < 1 || day > daysOfMonth(year, month)) {
    return false;
  }
  days = daysOf(year, month, day);
  return true;
}

// Takes the time of a day, in billionths of a second.
bool takeTime(std::string_view& text, std::int64_t& nanoseconds) {
  std::int64_t hour;
  std::int64_t minute;
  std::int64_t second;
  if (!takeNumber(text, 2, hour) || !take(text, ':') || !takeNumber(text, 2, minute) ||
      !take(text, ':') || !takeNumber(text, 2, second) || hour > 23 || minute > 59 || second > 59) {
    return false;
  }
  nanoseconds = (hour * 3600 + minute * 60 + second) * kNanosecondsPerSecond;
  if (!take(text, '.')) {
    return true;
  }
  std::int64_t digit;
  std::int64_t unit = kNanosecondsPerSecond / 10;
  bool isAny = false;
  for (; unit > 0 && takeNumber(text, 1, digit); unit /= 10) {
    nanoseconds += digit * unit;
    isAny = true;
  }
  return isAny;
}

}  // namespace

std::optional<std::int64_t> daysOfIsoDate(std::string_view text) {
  std::int64_t days;
  return takeDate(text, days) && text.empty() ? std::optional(days) : std::nullopt;
}

std::optional<std::int64_t> ticksOfIsoTimestamp(std::string_view text, int digits, bool isUtc) {
  std::int64_t days;
  std::int64_t nanoseconds;
  if (!takeDate(text, days) || !take(text, 'T') || !takeTime(text, nanoseconds) ||
      (isUtc && !take(text, 'Z')) || !text.empty()) {
    return std::nullopt;
  }
  const std::int64_t ticksPerSecond = ticksPerSecondOf(digits);
  const std::int64_t perTick = kNanosecondsPerSecond / ticksPerSecond;
  std::int64_t ticks;
  if (nanoseconds % perTick != 0 ||
      __builtin_mul_overflow(days, kSecondsPerDay * ticksPerSecond, &ticks) ||
      __builtin_add_overflow(ticks, nanoseconds / perTick, &ticks)) {
    return std::nullopt;
  }
  return ticks;
}

QString TimestampForm::example() const {
  std::int64_t ticks = 1706745599;  // 2024-01-31 23:59:59
  for (int digit = 1; digit <= decimals; ++digit) {
    ticks = 10 * ticks + digit;
  }
  std::string text;
  appendIsoTimestamp(text, ticks, decimals, isUtc);
  return QString::fromStdString(text);
}

QString TimestampForm::dateFormat() const {
  return QStringLiteral("yyyy-MM-ddThh:mm:ss") +
         (decimals > 0 ? QStringLiteral(".zzz") : QString()) +
         (isUtc ? QStringLiteral("Z") : QString());
}

QStringList notesOn(const QString& source,
                    const std::vector<std::pair<QString, TimestampForm>>& columns) {
  QMap<QString, QVector<QString>> columnsOfExample;
  QHash<QString, TimestampForm> forms;
  for (const auto& [column, form] : columns) {
    columnsOfExample[form.example()].append(column);
    forms.insert(form.example(), form);
  }
  QStringList notes;
  for (auto entry = columnsOfExample.cbegin(); entry != columnsOfExample.cend(); ++entry) {
    const TimestampForm form = forms[entry.key()];
    notes += table_messages::timestampForm(source, shownNames(entry.value()), entry.key(),
                                           form.dateFormat(), form.isUtc);
  }
  return notes;
}

}  // namespace kelvarin
