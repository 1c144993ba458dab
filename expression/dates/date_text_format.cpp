#include "expression/dates/date_text_format.h"

#include <algorithm>

#include <QLocale>
#include <QStringView>

#include "expression/dates/local_time.h"
#include "expression/dates/stated_zone.h"

namespace kelvarin {

namespace {

// Stands where a zone was taken out, and before the one that is put at the end. It is of Unicode's
// private use, so that no date has it.
constexpr QChar kMark(0xE000);
// Of names of months and zones in any language, far beyond the length of the format.
constexpr qsizetype kLongestNames = 1000;
constexpr char kPatternLetters[] = "yMdhHmszaApPt";

bool isPatternLetter(QChar c) {
  return c != QChar(0) && QLatin1String(kPatternLetters).contains(c);
}

bool isFixedText(QChar c) {
  return c != u'\'' && !isPatternLetter(c);
}

}  // namespace

DateTextFormat::DateTextFormat(const QString& format, bool isOfLocale)
    : m_format(format), m_isOfLocale(isOfLocale) {
  if (!isOfLocale) {
    m_fixed = FixedDateFormat::of(format);
  }
  examine();
}

void DateTextFormat::examine() {
  bool isQuoted = false;
  for (qsizetype i = 0; i < m_format.size(); ++i) {
    const QChar c = m_format[i];
    isQuoted ^= c == u'\'';
    if (isQuoted) {
      continue;
    }
    m_hasDate |= c == u'y' || c == u'M' || c == u'd';
    if (c == u't' && m_zone < 0) {
      m_zone = i;
    }
  }
  if (isQuoted) {
    m_format += u'\'';
  }
  // The reading is taken as UTC, which leaves out no hour: it has a zone of its own at the end.
  m_clockPattern = m_format + kMark + u't';
  if (m_zone < 0) {
    return;
  }
  m_clockPattern[m_zone] = kMark;
  qsizetype start = m_zone;
  while (start > 0 && isFixedText(m_format[start - 1])) {
    --start;
  }
  qsizetype end = m_zone + 1;
  while (end < m_format.size() && isFixedText(m_format[end])) {
    ++end;
  }
  m_beforeZone = m_format.sliced(start, m_zone - start);
  m_behindZone = m_format.sliced(m_zone + 1, end - m_zone - 1);
}

DateReading DateTextFormat::read(const QString& date) const {
  if (m_fixed) {
    const QDateTime clock = m_fixed->parse(date);
    if (clock.isValid()) {
      return {clock, {}};
    }
  }
  if (date.size() > m_format.size() + kLongestNames) {
    return {};
  }
  return m_zone < 0 ? DateReading{readClock(date), {}} : readWithZone(date);
}

// A zone has no fixed length, and some locales have it in the middle: it is where the rest is a
// date.
DateReading DateTextFormat::readWithZone(const QString& date) const {
  for (qsizetype start = 0; start < date.size(); ++start) {
    const DateReading reading = readWithZoneAt(date, start);
    if (reading.clock.isValid()) {
      return reading;
    }
  }
  return {};
}

DateReading DateTextFormat::readWithZoneAt(const QString& date, qsizetype start) const {
  constexpr qsizetype longestZone = 40;
  if (!QStringView(date).first(start).endsWith(m_beforeZone)) {
    return {};
  }
  const bool isLast = m_zone + 1 == m_format.size();
  const qsizetype nearestEnd = isLast ? date.size() : start + 1;
  for (qsizetype end = std::min(date.size(), start + longestZone); end >= nearestEnd; --end) {
    const QString zone = date.sliced(start, end - start);
    const QString behind = date.sliced(end);
    if (!behind.startsWith(m_behindZone) || !looksLikeZone(zone)) {
      continue;
    }
    const QDateTime clock = readClock(date.first(start) + kMark + behind);
    if (clock.isValid()) {
      return {clock, zone};
    }
  }
  return {};
}

QDateTime DateTextFormat::readClock(const QString& date) const {
  const QString text = date + kMark + QStringLiteral("UTC");
  const QDateTime parsed = m_isOfLocale ? QLocale::system().toDateTime(text, m_clockPattern)
                                        : QDateTime::fromString(text, m_clockPattern);
  return parsed.isValid() ? clockReading(parsed.date(), parsed.time()) : QDateTime();
}

QString DateTextFormat::print(const QDateTime& date) const {
  return m_isOfLocale ? QLocale::system().toString(date, m_format) : date.toString(m_format);
}

}  // namespace kelvarin
