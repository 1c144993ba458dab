// The time zone that a date text states: UTC, an offset, a location such as Europe/Berlin, or a
// name that this machine's zone has, such as CET and CEST.
//
// Names of other zones are not known, since the same letters mean different zones in different
// countries. Used by DateContext.
// Errors: nothing for what is no zone.
#pragma once

#include <optional>

#include <QDateTime>
#include <QString>

#include "expression/dates/local_time.h"

namespace kelvarin {

// It may be the text of a zone, by its letters.
bool looksLikeZone(const QString& text);

// The instant at which a clock of that zone shows the reading. `isLocalClock`: the reading has no
// date and so no summer or winter; under a name of the local zone it is just local time.
std::optional<Instant> instantInStatedZone(const QDateTime& clock, const QString& zone,
                                           bool isLocalClock);

}  // namespace kelvarin
