#include "expression/dates/fixed_date_format.h"

#include <algorithm>
#include <utility>

#include "expression/dates/local_time.h"

namespace kelvarin {

namespace {

constexpr bool isDigit(QChar c) {
  return c >= u'0' && c <= u'9';
}

// Letters stand for fields, but for the T and Z of ISO 8601; quotes enclose what does not.
bool isPlain(QChar c) {
  return c.unicode() < 0x80 && (!c.isLetter() || c == u'T' || c == u'Z') && c != u'\'';
}

bool areDigits(QStringView text) {
  return std::all_of(text.begin(), text.end(), isDigit);
}

// -1 when one of the characters is no digit.
int numberAt(const QString& text, qsizetype start, int width) {
  int number = 0;
  for (qsizetype i = start; i < start + width; ++i) {
    if (!isDigit(text[i])) {
      return -1;
    }
    number = number * 10 + (text[i].unicode() - u'0');
  }
  return number;
}

}  // namespace

// A width of 0 for what has no fixed position.
FixedDateFormat::Part FixedDateFormat::partAt(const QString& format, qsizetype start) {
  static constexpr std::pair<const char*, Field> fields[] = {
      {"yyyy", year}, {"MM", month},  {"dd", day},    {"hh", hour},
      {"HH", hour},   {"mm", minute}, {"ss", second}, {"zzz", millisecond}};
  const QChar first = format[start];
  if (isPlain(first)) {
    return {literal, 1, first};
  }
  qsizetype end = start;
  while (end < format.size() && format[end] == first) {
    ++end;
  }
  const QString run = format.sliced(start, end - start);
  for (const auto& [letters, field] : fields) {
    if (run == QLatin1String(letters)) {
      return {field, static_cast<int>(run.size()), {}};
    }
  }
  return {literal, 0, {}};
}

bool FixedDateFormat::add(const Part& part) {
  if (part.width == 0 || (part.field != literal && std::exchange(m_has[part.field], true))) {
    return false;
  }
  m_parts.push_back(part);
  m_length += part.width;
  return true;
}

std::optional<FixedDateFormat> FixedDateFormat::of(const QString& userFormat) {
  QString format = userFormat;
  format.replace(QLatin1String("'T'"), QLatin1String("T"));
  format.replace(QLatin1String("'Z'"), QLatin1String("Z"));
  FixedDateFormat fixed;
  while (fixed.m_length < format.size()) {
    if (!fixed.add(partAt(format, fixed.m_length))) {
      return std::nullopt;
    }
  }
  return fixed.hasWholeDate() ? std::optional(std::move(fixed)) : std::nullopt;
}

QDateTime FixedDateFormat::parse(const QString& text) const {
  // Digits below the millisecond have no use and no fixed number.
  const qsizetype finerDigits = text.size() - m_length;
  if (finerDigits < 0 || (finerDigits > 0 && !m_has[millisecond])) {
    return {};
  }
  int values[kFields] = {};
  qsizetype position = 0;
  for (const Part& part : m_parts) {
    if (part.field == literal) {
      if (text[position] != part.character) {
        return {};
      }
    } else if ((values[part.field] = numberAt(text, position, part.width)) < 0) {
      return {};
    }
    position += part.width;
    if (part.field == millisecond) {
      if (!areDigits(text.sliced(position, finerDigits))) {
        return {};
      }
      position += finerDigits;
    }
  }
  const QDate date(values[year], values[month], values[day]);
  const QTime time(values[hour], values[minute], values[second], values[millisecond]);
  return date.isValid() && time.isValid() ? clockReading(date, time) : QDateTime();
}

}  // namespace kelvarin
