#include "host/contract/shortest_number.h"

#include <cmath>
#include <cstring>
#include <string_view>

#include <fmt/compile.h>
#include <fmt/format.h>

namespace kelvarin {

namespace {

// Whole numbers below this are printed as integers, which is faster.
constexpr double kIntegersEnd = 1e15;

char* appendWord(char* place, std::string_view word) {
  std::memcpy(place, word.data(), word.size());
  return place + word.size();
}

}  // namespace

char* appendShortest(char* place, double number) {
  if (std::fabs(number) < kIntegersEnd) [[likely]] {
    const auto whole = static_cast<long long>(number);
    if (static_cast<double>(whole) == number && (whole != 0 || !std::signbit(number))) {
      return fmt::format_to(place, FMT_COMPILE("{}"), whole);
    }
  } else if (std::isnan(number)) {
    return appendWord(place, "nan");
  } else if (std::isinf(number)) {
    return appendWord(place, number > 0 ? "inf" : "-inf");
  }
  return fmt::format_to(place, FMT_COMPILE("{}"), number);
}

}  // namespace kelvarin
