// The texts about date formats, once each.
#pragma once

namespace kelvarin::messages {

inline constexpr char kDateFormatMeant[] =
    "Date format '%1': did you mean '%2'? Years are yyyy, months MM, days dd, hours hh, minutes "
    "mm, seconds ss; small and capital letters differ.";
inline constexpr char kDateFormatForeign[] =
    "Date format '%1': a % and the letter behind it are no field here. Years are yyyy, months MM, "
    "days dd, hours hh, minutes mm, seconds ss; small and capital letters differ.";

// Behind the warning about a reference time that cannot be parsed.
inline constexpr char kReferenceForm[] =
    "The reference time '%1' is not written yyyyMMdd hh:mm:ss, as 20240131 00:00:00 is.";
inline constexpr char kReferenceMeant[] =
    "The reference time '%1' is not written yyyyMMdd hh:mm:ss. Write it: %2";
inline constexpr char kNoReference[] =
    "No reference time is given, so elapsed times count from 1970-01-01 00:00:00 (UTC). Give one "
    "with referenceTime, for instance 20000101 00:00:00.";

}  // namespace kelvarin::messages
