// The texts about date formats, once each.
#pragma once

namespace kelvarin::messages {

inline constexpr char kDateFormatMeant[] =
    "Date format '%1': did you mean '%2'? Years are yyyy, months MM, days dd, hours hh, minutes "
    "mm, seconds ss; small and capital letters differ.";
inline constexpr char kDateFormatForeign[] =
    "Date format '%1': a % and the letter behind it are no field here. Years are yyyy, months MM, "
    "days dd, hours hh, minutes mm, seconds ss; small and capital letters differ.";

}  // namespace kelvarin::messages
