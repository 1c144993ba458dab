// Dates as the made tables have them. Threads: any.
#pragma once

#include <chrono>
#include <string>

#include <fmt/format.h>

namespace kelvarin {

constexpr std::chrono::sys_days firstDayOf(int year) {
  return std::chrono::year(year) / std::chrono::January / 1;
}

inline std::string dateText(std::chrono::sys_days day) {
  const std::chrono::year_month_day date(day);
  return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(date.year()),
                     static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
}

}  // namespace kelvarin
