// Dates and timestamps as ISO 8601 text: "2013-01-31", "2013-01-31T05:15:00.250Z".
//
// Days and times are counted from 1970-01-01 in the proleptic Gregorian calendar.
#pragma once

#include <cstdint>
#include <string>

namespace kelvarin {

// Appends to `text`.
void appendIsoDate(std::string& text, std::int64_t daysSinceEpoch);
// `digits` is the number of decimals of a tick: 0, 3, 6 or 9. All are written, so that the texts of
// a column have one form.
void appendIsoTimestamp(std::string& text, std::int64_t ticksSinceEpoch, int digits, bool isUtc);

}  // namespace kelvarin
