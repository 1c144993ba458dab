#include "expression/dates/stated_zone.h"

#include <QRegularExpression>
#include <QTimeZone>

namespace kelvarin {

namespace {

constexpr Instant kMillisecondsOfMinute = 60'000;
constexpr int kMinutesOfHour = 60;
constexpr int kLargestOffset = 14 * kMinutesOfHour;  // of any zone in use

// UTC+03:00, GMT-5, +0530, Z.
std::optional<Instant> statedOffset(const QString& zone) {
  static const QRegularExpression pattern(
      QStringLiteral("^(?:Z|UTC|GMT|(?:UTC|GMT)?([+-])(\\d{1,2})(?::?(\\d{2}))?)$"),
      QRegularExpression::CaseInsensitiveOption);
  const QRegularExpressionMatch match = pattern.match(zone);
  if (!match.hasMatch()) {
    return std::nullopt;
  }
  const int minutes = match.captured(3).toInt();
  const int all = match.captured(2).toInt() * kMinutesOfHour + minutes;
  if (minutes >= kMinutesOfHour || all > kLargestOffset) {
    return std::nullopt;
  }
  return (match.captured(1) == QLatin1String("-") ? -all : all) * kMillisecondsOfMinute;
}

std::optional<Instant> instantInNamedZone(const QDateTime& clock, const QByteArray& name) {
  if (!name.contains('/') || !QTimeZone::isTimeZoneIdAvailable(name)) {
    return std::nullopt;
  }
  const QTimeZone zone(name);
  const auto offsetAt = [&zone](Instant instant) {
    return std::optional<Instant>(
        zone.offsetFromUtc(QDateTime::fromMSecsSinceEpoch(instant, Qt::UTC)) * Instant{1000});
  };
  return instantOfReading(clock, offsetAt, false);
}

}  // namespace

bool looksLikeZone(const QString& text) {
  static const QRegularExpression pattern(
      QStringLiteral("^(?:[A-Za-z][A-Za-z0-9_/+:-]*|[+-]\\d[\\d:]*)$"));
  return pattern.match(text).hasMatch();
}

std::optional<Instant> instantInStatedZone(const QDateTime& clock, const QString& zone,
                                           bool isLocalClock) {
  if (isLocalClock && isLocalZoneNowadays(zone)) {
    return localInstant(clock);
  }
  if (const std::optional<Instant> offset = statedOffset(zone)) {
    return clock.toMSecsSinceEpoch() - *offset;
  }
  if (const std::optional<Instant> inZone = instantInNamedZone(clock, zone.toLatin1())) {
    return inZone;
  }
  return localInstantNamed(clock, zone);
}

}  // namespace kelvarin
