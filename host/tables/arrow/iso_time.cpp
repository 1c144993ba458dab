#include "host/tables/arrow/iso_time.h"

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

}  // namespace

// Years are counted from March, in eras of 400 years, so that the leap day is the last of its year.
void appendIsoDate(std::string& text, std::int64_t daysSinceEpoch) {
  constexpr std::int64_t kDaysFromMarchOfYearZero = 719468;
  constexpr std::int64_t kDaysPerEra = 146097;
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
  std::int64_t ticksPerSecond = 1;
  for (int i = 0; i < digits; ++i) {
    ticksPerSecond *= 10;
  }
  const Quotient seconds = divideDown(ticksSinceEpoch, ticksPerSecond);
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
