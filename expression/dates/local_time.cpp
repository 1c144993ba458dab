#include "expression/dates/local_time.h"

#include <ctime>

namespace kelvarin {

namespace {

constexpr Instant kMillisecondsOfDay = 86'400'000;

struct LocalZone {
  Instant offset = 0;  // milliseconds east of UTC
  QString name;
};

// By the C library, since QDateTime takes the hour that comes twice for the one or the other
// depending on what it converted before.
bool readLocalTime(Instant instant, std::tm& local) {
  const std::time_t seconds = instant / 1000 - (instant % 1000 < 0 ? 1 : 0);
  return localtime_r(&seconds, &local) != nullptr;
}

std::optional<Instant> localOffset(Instant instant) {
  std::tm local{};
  return readLocalTime(instant, local) ? std::optional<Instant>(local.tm_gmtoff * 1000)
                                       : std::nullopt;
}

std::optional<LocalZone> localZone(Instant instant) {
  std::tm local{};
  if (!readLocalTime(instant, local)) {
    return std::nullopt;
  }
  return LocalZone{local.tm_gmtoff * 1000, QString::fromLocal8Bit(local.tm_zone)};
}

// Under the name at this very time.
std::optional<Instant> localInstantInForce(Instant reading, const QString& zoneName) {
  for (const Instant nearby : {reading - kMillisecondsOfDay, reading + kMillisecondsOfDay}) {
    const std::optional<LocalZone> zone = localZone(nearby);
    if (!zone || zone->name != zoneName) {
      continue;
    }
    const std::optional<LocalZone> then = localZone(reading - zone->offset);
    if (then && then->offset == zone->offset && then->name == zoneName) {
      return reading - zone->offset;
    }
  }
  return std::nullopt;
}

// Within a year from that time.
std::optional<Instant> localOffsetNamed(Instant around, const QString& zoneName) {
  constexpr int step = 7;  // days; no name is in force for less
  constexpr int year = 366;
  for (int days = 0; days <= year; days += step) {
    for (const int direction : {-1, 1}) {
      const auto zone = localZone(around + direction * days * kMillisecondsOfDay);
      if (zone && zone->name == zoneName) {
        return zone->offset;
      }
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<Instant> localInstant(const QDateTime& clock) {
  return instantOfReading(clock, localOffset, false);
}

std::optional<Instant> localInstantNamed(const QDateTime& clock, const QString& zoneName) {
  const Instant reading = clock.toMSecsSinceEpoch();
  if (const auto inForce = localInstantInForce(reading, zoneName)) {
    return inForce;
  }
  std::optional<Instant> offset = localOffsetNamed(reading, zoneName);
  if (!offset) {
    offset = localOffsetNamed(QDateTime::currentMSecsSinceEpoch(), zoneName);
  }
  return offset ? std::optional(reading - *offset) : std::nullopt;
}

bool isLocalZoneNowadays(const QString& zoneName) {
  return localOffsetNamed(QDateTime::currentMSecsSinceEpoch(), zoneName).has_value();
}

QDateTime dateOfReading(const QDateTime& clock, Qt::TimeSpec zone) {
  if (zone == Qt::UTC || !clock.isValid()) {
    return clock;
  }
  const std::optional<Instant> instant = instantOfReading(clock, localOffset, true);
  return instant ? QDateTime::fromMSecsSinceEpoch(*instant, zone) : QDateTime();
}

}  // namespace kelvarin
