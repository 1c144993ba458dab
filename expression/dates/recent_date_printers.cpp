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
const DatePrinter& RecentDatePrinters::of(std::string_view format) {
  constexpr std::size_t longest = 1000;
  if (format.size() > longest) {
    return m_printerOfLongFormat = printerFor(format);
  }
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
