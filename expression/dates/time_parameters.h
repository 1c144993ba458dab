// The parameters about dates and random numbers that every expression action stores.
#pragma once

#include <QString>

namespace kelvarin {

struct TimeParameters {
  bool addNow = false;   // offers the current time as `_now`, an elapsed time
  bool addNowS = false;  // offers it as `_nowS`, a date text
  int seed = -1;         // of the random generators; -1: from the clock
  int elapsedTimeUnit =
      2;  // 0 seconds, 1 minutes, 2 hours, 3 days, 4 weeks; every other value makes all 0
  int dateFormatType = 0;  // 0 `dateFormat`; 1 to 6 the locale's date, time, both; short or long
  bool isUTC = true;
  bool emptyETToNull = true;                   // an empty date input is null rather than 0
  QString referenceTime = QStringLiteral("");  // yyyyMMdd hh:mm:ss
  QString dateFormat = QStringLiteral("");
  int castToET1 = 0;  // not 0: a date before the reference instant is 0 rather than null
  int castToET2 = 0;  // not 0: an empty or unparsable date is 0 rather than null
};

}  // namespace kelvarin
