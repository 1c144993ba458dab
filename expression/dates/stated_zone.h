// The time zone that a date text states: UTC, an offset, a location such as Europe/Berlin, or a
// name that this machine's zone has, such as CET and CEST.
//
// Names of other zones are not known, since the same letters mean different zones in different
// countries. Used by DateTextFormat and DateContext.
// Threads: any number at once; copies share the zones that were found.
// Errors: nothing for what is no zone.
#pragma once

#include <memory>
#include <string_view>

#include "expression/dates/clock_zone.h"

namespace kelvarin {

inline constexpr std::size_t kLongestZone = 40;

bool isZoneCharacter(char c);
// It may be the text of a zone, by its letters and length.
bool looksLikeZone(std::string_view text);

class StatedZones {
 public:
  StatedZones();

  // The instant at which a clock of that zone shows the reading. `isLocalClock`: the reading has no
  // date and so no summer or winter; under a name of the local zone it is just local time.
  // `nowadays`: some time of the year in which the program runs, whose names are known, too.
  DateValue instantOf(ClockReading clock, std::string_view zone, bool isLocalClock,
                      const ClockZone& local, Instant nowadays) const;

 private:
  class Locations;

  std::shared_ptr<Locations> m_locations;
};

}  // namespace kelvarin
