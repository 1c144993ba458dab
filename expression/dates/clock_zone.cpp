#include "expression/dates/clock_zone.h"

#include <ctime>
#include <string_view>

namespace kelvarin {

namespace {

// By the C library, since QDateTime takes the hour that comes twice for the one or the other
// depending on what it converted before.
std::tm localTime(std::int64_t seconds) {
  std::tm local{};
  const std::time_t time = seconds;
  localtime_r(&time, &local);
  return local;
}

struct LocalZone {
  Instant offset = 0;  // milliseconds east of UTC
  bool hasName = false;
};

LocalZone localZone(Instant instant, std::string_view zoneName) {
  const std::tm local = localTime(flooredQuotient(instant, 1000));
  return {local.tm_gmtoff * 1000, local.tm_zone != nullptr && local.tm_zone == zoneName};
}

// Under the name at this very time.
DateValue localInstantInForce(Instant reading, std::string_view zoneName) {
  for (const Instant nearby : {reading - kMillisecondsOfDay, reading + kMillisecondsOfDay}) {
    const LocalZone zone = localZone(nearby, zoneName);
    if (!zone.hasName) {
      continue;
    }
    const LocalZone then = localZone(reading - zone.offset, zoneName);
    if (then.offset == zone.offset && then.hasName) {
      return reading - zone.offset;
    }
  }
  return std::nullopt;
}

// Within a year from that time.
std::optional<Instant> localOffsetNamed(Instant around, std::string_view zoneName) {
  constexpr int step = 7;  // days; no name is in force for less
  constexpr int year = 366;
  for (int days = 0; days <= year; days += step) {
    for (const int direction : {-1, 1}) {
      const LocalZone zone = localZone(around + direction * days * kMillisecondsOfDay, zoneName);
      if (zone.hasName) {
        return zone.offset;
      }
    }
  }
  return std::nullopt;
}

}  // namespace

ClockZone ClockZone::local() {
  return ClockZone(std::make_shared<const ZoneOffsets>(
      [](std::int64_t seconds) { return std::int64_t{localTime(seconds).tm_gmtoff}; }));
}

DateValue localInstantNamed(ClockReading clock, std::string_view zoneName, Instant nowadays) {
  const Instant reading = clock.milliseconds;
  if (const DateValue inForce = localInstantInForce(reading, zoneName)) {
    return inForce;
  }
  std::optional<Instant> offset = localOffsetNamed(reading, zoneName);
  if (!offset) {
    offset = localOffsetNamed(nowadays, zoneName);
  }
  return offset ? DateValue(reading - *offset) : DateValue();
}

bool isLocalZoneAround(Instant nowadays, std::string_view zoneName) {
  return localOffsetNamed(nowadays, zoneName).has_value();
}

}  // namespace kelvarin
