// Dates and timestamps as ISO 8601 text: "2013-01-31", "2013-01-31T05:15:00.250Z".
//
// Days and times are counted from 1970-01-01 in the proleptic Gregorian calendar.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QString>
#include <QStringList>

namespace kelvarin {

// Appends to `text`.
void appendIsoDate(std::string& text, std::int64_t daysSinceEpoch);
// `digits` is the number of decimals of a tick: 0, 3, 6 or 9. All are written, so that the texts of
// a column have one form.
void appendIsoTimestamp(std::string& text, std::int64_t ticksSinceEpoch, int digits, bool isUtc);

// What these texts stand for. Nothing where the text has another form, names no day or no time of
// one, or is out of range. A timestamp may have up to nine decimals; those that a tick cannot hold
// are zeros.
std::optional<std::int64_t> daysOfIsoDate(std::string_view text);
std::optional<std::int64_t> ticksOfIsoTimestamp(std::string_view text, int digits, bool isUtc);

// How the timestamps of one type are written.
struct TimestampForm {
  int decimals = 0;    // of the seconds: 0, 3, 6 or 9
  bool isUtc = false;  // the texts end in Z

  // A text of this form.
  QString example() const;
  // What reads the texts as dates; digits below the millisecond are dropped by the reader.
  QString dateFormat() const;
};

// One line for each form that columns of the table have, however many they are. `source` is what
// the table is called.
QStringList notesOn(const QString& source,
                    const std::vector<std::pair<QString, TimestampForm>>& columns);

}  // namespace kelvarin
