#include "expression/dates/date_printer.h"

#include <algorithm>
#include <array>

#include <QDateTime>

namespace kelvarin {

namespace {

constexpr std::string_view kUTC = "UTC";
constexpr int kHoursOfHalfDay = 12;

// Up to two digits without leading zeros, or as many as are asked for.
void appendNumber(DateText& text, int number, int digits) {
  if (digits == 1 && number < 10) {
    text.append(static_cast<char>('0' + number));
    return;
  }
  if (digits == 4) {
    text.appendTwoDigits(number / 100);
  } else if (digits == 3) {
    text.append(static_cast<char>('0' + number / 100));
  }
  text.appendTwoDigits(number % 100);
}

// Of a field that is a number.
int numberOf(DateField field, const ClockFields& fields) {
  switch (field) {
    case DateField::year:
      return fields.year;
    case DateField::yearOfCentury:
      return fields.year % 100;
    case DateField::month:
      return fields.month;
    case DateField::day:
      return fields.day;
    case DateField::hour:
      return fields.hour;
    case DateField::hourOfHalfDay:
      return (fields.hour + kHoursOfHalfDay - 1) % kHoursOfHalfDay + 1;
    case DateField::minute:
      return fields.minute;
    case DateField::second:
      return fields.second;
    default:
      return fields.millisecond;
  }
}

std::size_t longestNameOf(const DateNames& names) {
  return std::max({names.months.longest(), names.shortMonths.longest(), names.weekdays.longest(),
                   names.shortWeekdays.longest(), names.halfDays.longest(),
                   names.lowerHalfDays.longest(), kUTC.size()});
}

}  // namespace

DatePrinter::DatePrinter(const QString& format, bool isOfLocale)
    : m_format(format), m_isOfLocale(isOfLocale), m_names(dateNames(isOfLocale)) {
  m_parts = hasLatinDigits(isOfLocale) ? partsOfDateFormat(format) : std::nullopt;
  if (!m_parts || !isBounded()) {
    m_parts.reset();
    return;
  }
  const std::vector<DateFormatPart>& parts = m_parts->parts;
  m_hasZone = std::any_of(parts.begin(), parts.end(),
                          [](const DateFormatPart& part) { return part.field == DateField::zone; });
  m_layout = m_hasZone ? std::nullopt : FixedDateLayout::of(*m_parts);
}

bool DatePrinter::isBounded() const {
  const std::size_t longestName = longestNameOf(*m_names);
  constexpr std::size_t longestNumber = 4;
  std::size_t size = 0;
  for (const DateFormatPart& part : m_parts->parts) {
    const bool isText = part.field == DateField::literal;
    size += isText ? part.size : part.digits > 0 ? longestNumber : longestName;
  }
  return size <= kCapacity;
}

QString DatePrinter::print(Instant instant, const ClockZone& zone) const {
  char bytes[kCapacity];
  const std::optional<std::size_t> size = printTo(bytes, instant, zone);
  return size ? QString::fromUtf8(bytes, static_cast<qsizetype>(*size))
              : printGenerally(instant, zone);
}

std::optional<std::size_t> DatePrinter::printTo(char* bytes, Instant instant,
                                                const ClockZone& zone) const {
  constexpr std::int64_t lastPlainYear = 9999;
  if (!m_parts || (m_hasZone && !zone.isUTC())) {
    return std::nullopt;
  }
  const ClockReading clock = zone.readingAt(instant);
  const CivilDay day = civilDayOf(clock.dayNumber());
  if (day.year < 1 || day.year > lastPlainYear) {
    return std::nullopt;
  }
  if (m_layout) {
    m_layout->print(day, clock.timeOfDay(), bytes);
    return m_layout->size();
  }
  DateText text(bytes);
  printParts(fieldsOf(day, clock.timeOfDay()), weekdayOf(clock.dayNumber()), text);
  return text.size();
}

void DatePrinter::printParts(const ClockFields& fields, int weekday, DateText& text) const {
  for (const DateFormatPart& part : m_parts->parts) {
    if (part.digits > 0) {
      appendNumber(text, numberOf(part.field, fields), part.digits);
    } else {
      text.append(textOf(part, fields, weekday));
    }
  }
}

std::string_view DatePrinter::textOf(const DateFormatPart& part, const ClockFields& fields,
                                     int weekday) const {
  const int half = fields.hour < kHoursOfHalfDay ? 0 : 1;
  switch (part.field) {
    case DateField::monthName:
      return m_names->months[fields.month - 1];
    case DateField::shortMonthName:
      return m_names->shortMonths[fields.month - 1];
    case DateField::weekdayName:
      return m_names->weekdays[weekday];
    case DateField::shortWeekdayName:
      return m_names->shortWeekdays[weekday];
    case DateField::halfDay:
      return m_names->halfDays[half];
    case DateField::lowerHalfDay:
      return m_names->lowerHalfDays[half];
    case DateField::zone:
      return kUTC;
    default:
      return m_parts->literalOf(part);
  }
}

QString DatePrinter::printGenerally(Instant instant, const ClockZone& zone) const {
  const auto date = QDateTime::fromMSecsSinceEpoch(instant, zone.isUTC() ? Qt::UTC : Qt::LocalTime);
  return m_isOfLocale ? QLocale::system().toString(date, m_format) : date.toString(m_format);
}

}  // namespace kelvarin
