#include "expression/dates/recent_date_printers.h"

#include <utility>

namespace kelvarin {

namespace {

DatePrinter printerFor(std::string_view format) {
  return DatePrinter(QString::fromUtf8(format.data(), static_cast<qsizetype>(format.size())),
                     false);
}

}  // namespace

// Long texts as formats are not worth their memory.
DateText RecentDatePrinters::print(Instant instant, const ClockZone& zone,
                                   std::string_view format) {
  constexpr std::size_t longest = 1000;
  return format.size() > longest ? printerFor(format).print(instant, zone)
                                 : printerOf(format).print(instant, zone);
}

const DatePrinter& RecentDatePrinters::printerOf(std::string_view format) {
  constexpr std::size_t kept = 8;
  for (const Entry& entry : m_entries) {
    if (entry.format == format) {
      return entry.printer;
    }
  }
  Entry entry{std::string(format), printerFor(format)};
  if (m_entries.size() < kept) {
    return m_entries.emplace_back(std::move(entry)).printer;
  }
  Entry& oldest = m_entries[m_oldest++ % kept];
  oldest = std::move(entry);
  return oldest.printer;
}

}  // namespace kelvarin
