#include "expression/dates/date_context.h"

#include <ctime>
#include <iterator>

#include <QDateTime>
#include <QLocale>

#include "base/null_number.h"
#include "expression/dates/date_format_advice.h"

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

// 0 for an unknown unit.
std::int64_t millisecondsOf(int elapsedTimeUnit) {
  constexpr std::int64_t units[] = {1000, 60'000, 3'600'000, 86'400'000, 604'800'000};
  const auto index = static_cast<std::size_t>(elapsedTimeUnit);
  return index < std::size(units) ? units[index] : 0;
}

}  // namespace

void DateContext::configure(const TimeParameters& parameters) {
  m_parameters = parameters;
  m_reference = 0;
  m_millisecondsOfUnit = millisecondsOf(parameters.elapsedTimeUnit);
  m_format = {};
  m_formatAdvice.clear();
  m_zone = ClockZone::utc();
}

DateStatus DateContext::prepare(DateNeeds needs) {
  tzset();
  m_zone = m_parameters.isUTC ? ClockZone::utc() : ClockZone::local();
  m_nowadays = currentInstant();
  needs.reference |= m_parameters.addNow;
  needs.format |= m_parameters.addNowS;

  const bool isReferenceKnown = !needs.reference || prepareReference();
  if (needs.format && !prepareFormat()) {
    return DateStatus::dateFormatUnknown;
  }
  return isReferenceKnown ? DateStatus::ready : DateStatus::referenceTimeUnparsable;
}

bool DateContext::prepareReference() {
  const DateTextFormat format(QStringLiteral("yyyyMMdd hh:mm:ss"), false);
  const DateReading reading = format.read(utf8Of(m_parameters.referenceTime));
  const DateValue reference = reading.isDate() ? m_zone.instantAt(reading.clock()) : DateValue();
  m_reference = reference.value_or(0);
  return reference.has_value();
}

bool DateContext::prepareFormat() {
  const int type = m_parameters.dateFormatType;
  const bool isUsers = type == kUserFormat;
  m_format = DateTextFormat(isUsers ? m_parameters.dateFormat : systemFormat(type), !isUsers);
  m_formatAdvice = isUsers ? adviceOnDateFormat(m_parameters.dateFormat) : QString();
  return !m_format.text().isEmpty();
}

Instant DateContext::currentInstant() const {
  return m_fixedTime ? *m_fixedTime : QDateTime::currentMSecsSinceEpoch();
}

double DateContext::currentElapsedTime() const {
  return wholeUnits(currentInstant() - m_reference);
}

QString DateContext::currentDateString() const {
  return printer().print(currentInstant(), m_zone);
}

double DateContext::elapsedFractionAt(Instant instant) const {
  const std::int64_t elapsed = instant - m_reference;
  if (elapsed < 0) {
    return m_parameters.castToET1 != 0 ? 0.0 : kNullNumber;
  }
  return m_millisecondsOfUnit == 0
             ? 0.0
             : static_cast<double>(elapsed) / static_cast<double>(m_millisecondsOfUnit);
}

DateValue DateContext::instantOfOther(std::string_view date) const {
  if (date.empty()) {
    return std::nullopt;
  }
  const DateReading reading = m_format.read(date);
  if (!reading.isDate()) {
    return std::nullopt;
  }
  if (reading.zone().empty()) {
    return m_zone.instantAt(reading.clock());
  }
  const bool isLocalClock = !m_zone.isUTC() && !m_format.hasDate();
  return m_statedZones.instantOf(reading.clock(), reading.zone(), isLocalClock, m_zone, m_nowadays);
}

}  // namespace kelvarin
