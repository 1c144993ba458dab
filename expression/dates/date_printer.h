// Prints instants in one date format.
//
// A format of numbers, names and fixed text is compiled, and the years 1 to 9999 are printed by
// the compiled form; everything else is printed by QDateTime, to the same texts.
// Threads: read-only after its construction.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include <QString>

#include "expression/dates/clock_zone.h"
#include "expression/dates/date_format_parts.h"
#include "expression/dates/date_names.h"
#include "expression/dates/date_text.h"
#include "expression/dates/fixed_date_layout.h"

namespace kelvarin {

class DatePrinter {
 public:
  static constexpr std::size_t kCapacity = 120;

  DatePrinter() = default;
  // `isOfLocale`: names of days and months are those of the system's locale, else English.
  DatePrinter(const QString& format, bool isOfLocale);

  bool isCompiled() const { return m_parts.has_value(); }
  QString print(Instant instant, const ClockZone& zone) const;
  // Into `bytes`, of which there are kCapacity; returns the size, or nothing where printGenerally()
  // must be asked.
  std::optional<std::size_t> printTo(char* bytes, Instant instant, const ClockZone& zone) const;
  QString printGenerally(Instant instant, const ClockZone& zone) const;

 private:
  bool isBounded() const;
  void printParts(const ClockFields& fields, int weekday, DateText& text) const;
  // Of a part that is no number.
  std::string_view textOf(const DateFormatPart& part, const ClockFields& fields, int weekday) const;

  QString m_format;
  bool m_isOfLocale = false;
  std::optional<DateFormatParts> m_parts;
  std::optional<FixedDateLayout> m_layout;
  bool m_hasZone = false;
  std::shared_ptr<const DateNames> m_names;
};

}  // namespace kelvarin
