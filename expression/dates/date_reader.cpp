#include "expression/dates/date_reader.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "expression/dates/stated_zone.h"

namespace kelvarin {

namespace {

constexpr int kFirstYear = 1900;  // of years with two digits, and where a format has none
constexpr int kHoursOfHalfDay = 12;

// Fields that say the same count as one.
constexpr DateField subjectOf(DateField field) {
  switch (field) {
    case DateField::yearOfCentury:
      return DateField::year;
    case DateField::monthName:
    case DateField::shortMonthName:
      return DateField::month;
    case DateField::shortWeekdayName:
      return DateField::weekdayName;
    case DateField::hourOfHalfDay:
      return DateField::hour;
    case DateField::lowerHalfDay:
      return DateField::halfDay;
    default:
      return field;
  }
}

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<signed char>(c) > 0; });
}

int countOf(const DateFormatParts& format, DateField subject) {
  return static_cast<int>(
      std::count_if(format.parts.begin(), format.parts.end(), [&](const DateFormatPart& part) {
        return part.field != DateField::literal && subjectOf(part.field) == subject;
      }));
}

bool has(const DateFormatParts& format, std::initializer_list<DateField> subjects) {
  return std::all_of(subjects.begin(), subjects.end(),
                     [&](DateField subject) { return countOf(format, subject) > 0; });
}

bool hasFieldTwice(const DateFormatParts& format) {
  return std::any_of(format.parts.begin(), format.parts.end(), [&](const DateFormatPart& part) {
    return part.field != DateField::literal && countOf(format, subjectOf(part.field)) > 1;
  });
}

// A weekday that contradicts the date, and a half of the day without an hour, are not understood.
bool hasLoneField(const DateFormatParts& format) {
  const bool hasWholeDate = has(format, {DateField::year, DateField::month, DateField::day});
  return (has(format, {DateField::weekdayName}) && !hasWholeDate) ||
         (has(format, {DateField::halfDay}) && !has(format, {DateField::hour}));
}

// Where a number of varying width ends must be seen without its neighbour.
bool hasOpenNumber(const DateFormatParts& format) {
  const std::vector<DateFormatPart>& parts = format.parts;
  for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
    const DateFormatPart& next = parts[i + 1];
    const bool isClosed = next.field == DateField::zone ||
                          (next.field == DateField::literal && !isDigit(format.literalOf(next)[0]));
    if (parts[i].digits == 1 && !isClosed) {
      return true;
    }
  }
  return false;
}

// The zone is at the end, and nothing before it could be taken for its beginning.
bool isZoneSeparate(const DateFormatParts& format) {
  const std::vector<DateFormatPart>& parts = format.parts;
  if (countOf(format, DateField::zone) == 0) {
    return true;
  }
  if (parts.size() < 2 || parts.back().field != DateField::zone) {
    return false;
  }
  const DateFormatPart& before = parts[parts.size() - 2];
  const std::string_view literal = format.literalOf(before);
  return before.digits > 0 || !std::all_of(literal.begin(), literal.end(), isZoneCharacter);
}

// Digits below the millisecond have no use and no fixed number. Nothing where they may not be.
std::optional<std::size_t> sizeOfFixedFields(const DateFormatParts& format) {
  if (!has(format, {DateField::year, DateField::month, DateField::day, DateField::millisecond})) {
    return std::nullopt;
  }
  std::size_t size = 0;
  for (const DateFormatPart& part : format.parts) {
    const bool isFixed = part.field == DateField::literal || part.digits > 1;
    if (!isFixed || part.field == DateField::yearOfCentury) {
      return std::nullopt;
    }
    size += part.digits + part.size;
  }
  return size;
}

bool areDistinct(const DateNames& names) {
  return names.months.areDistinct() && names.shortMonths.areDistinct() &&
         names.weekdays.areDistinct() && names.shortWeekdays.areDistinct() &&
         names.halfDays.areDistinct() && names.lowerHalfDays.areDistinct();
}

bool isName(const DateFormatPart& part) {
  return part.digits == 0 && part.field != DateField::literal && part.field != DateField::zone;
}

// Those before the first name, which may be written in other letters too.
std::size_t countOfStrictParts(const DateFormatParts& format) {
  const auto name = std::find_if(format.parts.begin(), format.parts.end(), isName);
  return static_cast<std::size_t>(name - format.parts.begin());
}

// Moves behind the number; false when there are not so many digits.
bool takeNumber(std::string_view text, std::size_t& position, int digits, int& number) {
  const std::size_t left = text.size() - position;
  const char* const start = text.data() + position;
  std::size_t count = static_cast<std::size_t>(digits);
  if (count == 1 && left > 1 && isDigit(start[1])) {
    count = 2;
  }
  if (count > left) {
    return false;
  }
  number = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (!isDigit(start[i])) {
      return false;
    }
    number = number * 10 + (start[i] - '0');
  }
  position += count;
  return true;
}

// `number` counts names from `first`.
bool takeName(const DateNameList& names, std::string_view text, std::size_t& position, int first,
              int& number) {
  const int index = names.indexOf(text.substr(position));
  if (index == DateNameList::kNone) {
    return false;
  }
  position += names[index].size();
  number = first + index;
  return true;
}

bool takeLiteral(std::string_view literal, std::string_view text, std::size_t& position) {
  if (text.size() - position < literal.size() || text[position] != literal[0]) {
    return false;
  }
  const bool isTaken = literal.size() == 1 || text.substr(position).starts_with(literal);
  position += literal.size();
  return isTaken;
}

}  // namespace

struct DateReader::Values {
  ClockFields fields;
  int half = -1;
  int hourOfHalf = -1;
  int weekday = -1;
};

std::optional<DateReader> DateReader::of(const QString& format, bool isOfLocale) {
  std::optional<DateFormatParts> parts = partsOfDateFormat(format);
  const bool isCompilable = parts && hasLatinDigits(isOfLocale) && !hasFieldTwice(*parts) &&
                            !hasLoneField(*parts) && !hasOpenNumber(*parts) &&
                            isZoneSeparate(*parts);
  if (!isCompilable) {
    return std::nullopt;
  }
  DateReader reader(std::move(*parts), isOfLocale);
  const std::vector<DateFormatPart>& all = reader.m_format.parts;
  if (std::any_of(all.begin(), all.end(), isName) && !areDistinct(*reader.m_names)) {
    return std::nullopt;
  }
  return reader;
}

DateReader::DateReader(DateFormatParts format, bool isOfLocale)
    : m_format(std::move(format)), m_names(dateNames(isOfLocale)) {
  const std::vector<DateFormatPart>& parts = m_format.parts;
  m_hasZone = parts.back().field == DateField::zone;
  m_startsWithYear = parts.front().field == DateField::year;
  m_strictParts = isOfLocale ? 0 : countOfStrictParts(m_format);
  m_minusSigns = std::count(m_format.literals.begin(), m_format.literals.end(), '-');
  m_layout = FixedDateLayout::of(m_format);
  m_fixedSize = sizeOfFixedFields(m_format).value_or(0);
}

DateReader::Reading DateReader::read(std::string_view text) const {
  const std::size_t layoutSize = m_layout ? m_layout->size() : text.size() + 1;
  std::size_t position = 0;
  std::size_t readCount = 0;
  std::optional<ClockReading> clock;
  if (text.size() == layoutSize || (m_hasZone && text.size() > layoutSize)) {
    ClockFields fields;
    position = layoutSize;
    if (m_layout->read(text.data(), fields)) {
      clock = readingOf(fields);
    }
  } else {
    Values values;
    readCount = readParts(text, values, position);
    if (readCount == m_format.parts.size()) {
      clock = clockOf(values);
    }
  }
  const std::string_view zone = text.substr(position);
  if (clock && (m_hasZone ? looksLikeZone(zone) : zone.empty())) {
    return {Legibility::date, *clock, zone};
  }
  const bool isSure = readCount < m_strictParts || m_strictParts == m_format.parts.size();
  return {isSure && hasPlainYear(text) ? Legibility::noDate : Legibility::unknown, {}, {}};
}

std::size_t DateReader::readParts(std::string_view text, Values& values,
                                  std::size_t& position) const {
  ClockFields& fields = values.fields;
  const auto takes = [&](const DateFormatPart& part) {
    const auto number = [&](int& field) { return takeNumber(text, position, part.digits, field); };
    switch (part.field) {
      case DateField::literal:
        return takeLiteral(m_format.literalOf(part), text, position);
      case DateField::year:
        return number(fields.year);
      case DateField::yearOfCentury: {
        const bool isTaken = number(fields.year);
        fields.year += kFirstYear;
        return isTaken;
      }
      case DateField::month:
        return number(fields.month);
      case DateField::monthName:
        return takeName(m_names->months, text, position, 1, fields.month);
      case DateField::shortMonthName:
        return takeName(m_names->shortMonths, text, position, 1, fields.month);
      case DateField::day:
        return number(fields.day);
      case DateField::weekdayName:
        return takeName(m_names->weekdays, text, position, 0, values.weekday);
      case DateField::shortWeekdayName:
        return takeName(m_names->shortWeekdays, text, position, 0, values.weekday);
      case DateField::hour:
        return number(fields.hour);
      case DateField::hourOfHalfDay:
        return number(values.hourOfHalf);
      case DateField::minute:
        return number(fields.minute);
      case DateField::second:
        return number(fields.second);
      case DateField::millisecond:
        return number(fields.millisecond) && skipFinerDigits(text, position);
      case DateField::halfDay:
        return takeName(m_names->halfDays, text, position, 0, values.half);
      case DateField::lowerHalfDay:
        return takeName(m_names->lowerHalfDays, text, position, 0, values.half);
      case DateField::zone:
        return true;
    }
    return false;
  };
  const auto failed = std::find_if_not(m_format.parts.begin(), m_format.parts.end(), takes);
  return static_cast<std::size_t>(failed - m_format.parts.begin());
}

bool DateReader::skipFinerDigits(std::string_view text, std::size_t& position) const {
  if (m_fixedSize == 0 || text.size() <= m_fixedSize) {
    return true;
  }
  const std::size_t finerDigits = text.size() - m_fixedSize;
  const std::string_view rest = text.substr(position, finerDigits);
  position += rest.size();
  return rest.size() == finerDigits && std::all_of(rest.begin(), rest.end(), isDigit);
}

// Nothing where a field is out of its range or contradicts another one.
std::optional<ClockReading> DateReader::clockOf(const Values& values) {
  ClockFields fields = values.fields;
  if (values.hourOfHalf >= 0) {
    if (values.hourOfHalf < 1 || values.hourOfHalf > kHoursOfHalfDay) {
      return std::nullopt;
    }
    fields.hour = values.hourOfHalf % kHoursOfHalfDay + values.half * kHoursOfHalfDay;
  }
  const bool isInHalf = values.half < 0 || (fields.hour >= kHoursOfHalfDay) == (values.half == 1);
  const std::optional<ClockReading> clock = readingOf(fields);
  const bool isOnWeekday =
      values.weekday < 0 || (clock && values.weekday == weekdayOf(clock->dayNumber()));
  return isInHalf && isOnWeekday ? clock : std::nullopt;
}

// A year before the first one has a minus sign, and digits of other scripts are not ASCII.
bool DateReader::hasPlainYear(std::string_view text) const {
  if (!isAscii(text)) {
    return false;
  }
  if (m_startsWithYear) {
    return !text.starts_with('-');
  }
  return !m_hasZone && std::count(text.begin(), text.end(), '-') <= m_minusSigns;
}

}  // namespace kelvarin
