#include "expression/dates/date_text_format.h"

#include <algorithm>
#include <string>

#include <QDateTime>
#include <QLocale>
#include <QStringView>

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

DateReading::DateReading(ClockReading clock, std::string_view zone)
    : m_isDate(true), m_clock(clock), m_zoneSize(zone.copy(m_zone.data(), m_zone.size())) {}

DateTextFormat::DateTextFormat(const QString& format, bool isOfLocale)
    : m_format(format), m_isOfLocale(isOfLocale) {
  examine();
  m_reader = DateReader::of(m_format, isOfLocale);
  m_printer = DatePrinter(m_format, isOfLocale);
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

DateReading DateTextFormat::read(std::string_view date) const {
  if (!m_reader) {
    return readGenerally(date);
  }
  const DateReader::Reading reading = m_reader->read(date);
  switch (reading.legibility) {
    case Legibility::date:
      return DateReading(reading.clock, reading.zone);
    case Legibility::noDate:
      return {};
    case Legibility::unknown:
      return readGenerally(date);
  }
  return {};
}

DateReading DateTextFormat::readGenerally(std::string_view date) const {
  constexpr std::size_t longestCharacter = 4;  // bytes
  const qsizetype longestDate = m_format.size() + kLongestNames;
  if (date.size() > longestCharacter * static_cast<std::size_t>(longestDate)) {
    return {};
  }
  const QString text = QString::fromUtf8(date.data(), static_cast<qsizetype>(date.size()));
  if (text.isEmpty() || text.size() > longestDate) {
    return {};
  }
  if (m_zone >= 0) {
    return readWithZone(text);
  }
  const std::optional<ClockReading> clock = readClock(text);
  return clock ? DateReading(*clock) : DateReading();
}

// A zone has no fixed length, and some locales have it in the middle: it is where the rest is a
// date.
DateReading DateTextFormat::readWithZone(const QString& date) const {
  for (qsizetype start = 0; start < date.size(); ++start) {
    const DateReading reading = readWithZoneAt(date, start);
    if (reading.isDate()) {
      return reading;
    }
  }
  return {};
}

DateReading DateTextFormat::readWithZoneAt(const QString& date, qsizetype start) const {
  constexpr auto longestZone = static_cast<qsizetype>(kLongestZone);
  if (!QStringView(date).first(start).endsWith(m_beforeZone)) {
    return {};
  }
  const bool isLast = m_zone + 1 == m_format.size();
  const qsizetype nearestEnd = isLast ? date.size() : start + 1;
  for (qsizetype end = std::min(date.size(), start + longestZone); end >= nearestEnd; --end) {
    const std::string zone = date.sliced(start, end - start).toStdString();
    const QString behind = date.sliced(end);
    if (!behind.startsWith(m_behindZone) || !looksLikeZone(zone)) {
      continue;
    }
    if (const auto clock = readClock(date.first(start) + kMark + behind)) {
      return DateReading(*clock, zone);
    }
  }
  return {};
}

std::optional<ClockReading> DateTextFormat::readClock(const QString& date) const {
  const QString text = date + kMark + QStringLiteral("UTC");
  const QDateTime parsed = m_isOfLocale ? QLocale::system().toDateTime(text, m_clockPattern)
                                        : QDateTime::fromString(text, m_clockPattern);
  if (!parsed.isValid()) {
    return std::nullopt;
  }
  return ClockReading{QDateTime(parsed.date(), parsed.time(), Qt::UTC).toMSecsSinceEpoch()};
}

}  // namespace kelvarin
