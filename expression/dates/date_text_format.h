// A date format, and how a text in it is taken apart: into what the clock shows and the zone that
// the text states.
//
// Formats have the pattern letters of QDateTime; the letter `t` stands for the zone. The parser of
// QDateTime converts between zones while it reads, so it is only asked for the clock reading.
// Threads: read-only after its construction.
#pragma once

#include <optional>

#include <QDateTime>
#include <QString>

#include "expression/dates/fixed_date_format.h"

namespace kelvarin {

struct DateReading {
  QDateTime clock;  // see local_time.h; invalid when the text is no date
  QString zone;     // null where the format has none
};

class DateTextFormat {
 public:
  DateTextFormat() = default;
  // `isOfLocale`: names of days and months are those of the system's locale, else English.
  DateTextFormat(const QString& format, bool isOfLocale);

  const QString& text() const { return m_format; }
  bool hasDate() const { return m_hasDate; }

  DateReading read(const QString& date) const;
  QString print(const QDateTime& date) const;

 private:
  void examine();
  DateReading readWithZone(const QString& date) const;
  DateReading readWithZoneAt(const QString& date, qsizetype start) const;
  QDateTime readClock(const QString& date) const;

  QString m_format;
  bool m_isOfLocale = false;
  bool m_hasDate = false;
  std::optional<FixedDateFormat> m_fixed;  // the same format, where it is one
  qsizetype m_zone = -1;                   // index of the letter t
  QString m_clockPattern;                  // the format with a mark in its stead
  QString m_beforeZone;                    // what stands there in every text
  QString m_behindZone;
};

}  // namespace kelvarin
