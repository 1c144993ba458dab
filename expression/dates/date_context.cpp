#include "expression/dates/date_context.h"

#include <cmath>

#include <QLocale>

#include "base/null_number.h"
#include "expression/dates/date_needs.h"

namespace kelvarin {

namespace {

constexpr int kUserFormat = 0;

QString systemFormat(int type) {
  const QLocale locale = QLocale::system();
  switch (type) {
    case 1:
      return locale.dateFormat(QLocale::ShortFormat);
    case 2:
      return locale.dateFormat(QLocale::LongFormat);
    case 3:
      return locale.timeFormat(QLocale::ShortFormat);
    case 4:
      return locale.timeFormat(QLocale::LongFormat);
    case 5:
      return locale.dateTimeFormat(QLocale::ShortFormat);
    case 6:
      return locale.dateTimeFormat(QLocale::LongFormat);
    default:
      return {};
  }
}

// Local time, or the same digits taken as UTC.
QDateTime markedAs(QDateTime date, bool isUTC) {
  if (isUTC && (date.isValid() || date.date().isValid())) {
    return QDateTime(date.date(), date.time(), Qt::UTC);
  }
  return date;
}

}  // namespace

std::int64_t millisecondsOfUnit(int elapsedTimeUnit) {
  switch (elapsedTimeUnit) {
    case 0:
      return 1000;
    case 1:
      return 60'000;
    case 2:
      return 3'600'000;
    case 3:
      return 86'400'000;
    case 4:
      return 604'800'000;
    default:
      return 0;
  }
}

void DateContext::configure(const TimeParameters& parameters) {
  m_parameters = parameters;
  m_referenceMilliseconds = 0;
  m_format.clear();
  m_fixedFormat.reset();
}

DateStatus DateContext::prepare(const QStringList& expressions, bool hasDateInputs) {
  DateNeeds needs = dateNeedsOf(expressions);
  needs.reference |= m_parameters.addNow || hasDateInputs;
  needs.format |= m_parameters.addNowS || hasDateInputs;

  const bool isReferenceKnown = !needs.reference || prepareReference();
  if (needs.format && !prepareFormat()) {
    return DateStatus::dateFormatUnknown;
  }
  return isReferenceKnown ? DateStatus::ready : DateStatus::referenceTimeUnparsable;
}

bool DateContext::prepareReference() {
  const QDateTime parsed =
      QDateTime::fromString(m_parameters.referenceTime, QStringLiteral("yyyyMMdd hh:mm:ss"));
  const QDateTime reference = markedAs(parsed, m_parameters.isUTC);
  m_referenceMilliseconds = reference.isValid() ? reference.toMSecsSinceEpoch() : 0;
  return reference.isValid();
}

bool DateContext::prepareFormat() {
  m_isSystemFormat = m_parameters.dateFormatType != kUserFormat;
  m_format = m_isSystemFormat ? systemFormat(m_parameters.dateFormatType) : m_parameters.dateFormat;
  m_fixedFormat = m_isSystemFormat ? std::nullopt : FixedDateFormat::of(m_format);
  return !m_format.isEmpty();
}

double DateContext::wholeUnits(std::int64_t milliseconds) const {
  const std::int64_t unit = millisecondsOfUnit(m_parameters.elapsedTimeUnit);
  return unit == 0 ? 0.0 : static_cast<double>(milliseconds / unit);
}

double DateContext::currentElapsedTime() const {
  return wholeUnits(QDateTime::currentMSecsSinceEpoch() - m_referenceMilliseconds);
}

QString DateContext::currentDateString() const {
  return print(m_parameters.isUTC ? QDateTime::currentDateTimeUtc() : QDateTime::currentDateTime());
}

double DateContext::toElapsedTime(const QString& date) const {
  const double elapsed = toElapsedFraction(date);
  return isNullNumber(elapsed) ? kNullNumber : std::trunc(elapsed);
}

double DateContext::toElapsedFraction(const QString& date) const {
  const QDateTime parsed = date.isEmpty() ? QDateTime() : parse(date);
  if (!parsed.isValid()) {
    return m_parameters.castToET2 != 0 ? 0.0 : kNullNumber;
  }
  const std::int64_t elapsed = parsed.toMSecsSinceEpoch() - m_referenceMilliseconds;
  if (elapsed < 0) {
    return m_parameters.castToET1 != 0 ? 0.0 : kNullNumber;
  }
  const std::int64_t unit = millisecondsOfUnit(m_parameters.elapsedTimeUnit);
  return unit == 0 ? 0.0 : static_cast<double>(elapsed) / static_cast<double>(unit);
}

QDateTime DateContext::parse(const QString& date) const {
  if (m_fixedFormat) {
    const QDateTime fixed =
        m_fixedFormat->parse(date, m_parameters.isUTC ? Qt::UTC : Qt::LocalTime);
    if (fixed.isValid()) {
      return fixed;
    }
  }
  const QDateTime parsed = m_isSystemFormat ? QLocale::system().toDateTime(date, m_format)
                                            : QDateTime::fromString(date, m_format);
  return markedAs(parsed, m_parameters.isUTC);
}

QString DateContext::print(const QDateTime& date) const {
  return m_isSystemFormat ? QLocale::system().toString(date, m_format) : date.toString(m_format);
}

}  // namespace kelvarin
