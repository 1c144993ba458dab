// The time zone in which an evaluator reads and prints dates: UTC, or the zone of this machine,
// which the variable TZ may name.
//
// Used by DateContext and by the steps over the calendar.
// Threads: any number at once. Copies share what they found out about the zone.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "expression/dates/clock_reading.h"
#include "expression/dates/zone_offsets.h"

namespace kelvarin {

class ClockZone {
 public:
  static ClockZone utc() { return ClockZone(nullptr); }
  // The zone that is in force now.
  static ClockZone local();

  bool isUTC() const { return m_offsets == nullptr; }
  ClockReading readingAt(Instant instant) const {
    return {isUTC() ? instant : instant + m_offsets->at(instant)};
  }
  DateValue instantAt(ClockReading clock, InGap inGap = InGap::isNoTime) const {
    if (isUTC()) {
      return clock.milliseconds;
    }
    return instantOfReading(
        clock, [this](Instant instant) { return m_offsets->at(instant); }, inGap);
  }

 private:
  explicit ClockZone(std::shared_ptr<const ZoneOffsets> offsets) : m_offsets(std::move(offsets)) {}

  std::shared_ptr<const ZoneOffsets> m_offsets;
};

// Where this machine's zone has this name, as CET or CEST: at that time if it can be, else at
// another time of that year, else of the year around `nowadays`. Nothing for a name that the zone
// has at none of these.
DateValue localInstantNamed(ClockReading clock, std::string_view zoneName, Instant nowadays);
bool isLocalZoneAround(Instant nowadays, std::string_view zoneName);

}  // namespace kelvarin
