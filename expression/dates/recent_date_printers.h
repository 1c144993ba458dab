// The printers of the date formats that an expression names, so that each is compiled once and not
// for every row.
//
// Used by datePrint(). Threads: one; copies are independent.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "expression/dates/date_printer.h"

namespace kelvarin {

class RecentDatePrinters {
 public:
  // Until the next call.
  const DatePrinter& of(std::string_view format);

 private:
  struct Entry {
    std::string format;
    DatePrinter printer;
  };

  std::vector<Entry> m_entries;
  std::size_t m_oldest = 0;
  DatePrinter m_printerOfLongFormat;
};

}  // namespace kelvarin
