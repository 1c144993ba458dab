#include "columnar/codecs/moment_kernels.h"

namespace kelvarin::kernels {

namespace {

constexpr std::uint32_t joined(std::uint32_t first, std::uint32_t second) {
  return first | second << 16;
}

// Years begin in March here, so that a day that is sometimes there is the last one.
// Source: C. Neri, L. Schneider, "Euclidean affine functions and their application to calendar
// algorithms" (2022).
[[gnu::always_inline]] inline void cut(std::span<const std::uint32_t> days,
                                       const std::uint32_t* seconds, std::uint32_t* pairs) {
  constexpr std::uint32_t kDaysOfCenturies = 146097;  // four of them
  constexpr std::uint32_t kDaysOfYears = 1461;        // four of them
  constexpr std::uint32_t kDaysBeforeMarch = 60;
  constexpr std::uint32_t kDaysFromMarch = 306;
  for (std::size_t i = 0; i < days.size(); ++i) {
    const std::uint32_t fourths = 4 * (days[i] + kDaysOfCenturies - kDaysBeforeMarch) + 3;
    const std::uint32_t century = fourths / kDaysOfCenturies;
    const std::uint32_t ofCentury = (fourths - century * kDaysOfCenturies) | 3;
    const std::uint32_t yearOfCentury = ofCentury / kDaysOfYears;
    const std::uint32_t dayOfYear = (ofCentury - yearOfCentury * kDaysOfYears) / 4;
    const std::uint32_t months = 2141 * dayOfYear + 197913;
    const std::uint32_t isNextYear = dayOfYear >= kDaysFromMarch ? 1 : 0;
    const std::uint32_t month = (months >> 16) - 12 * isNextYear;
    const std::uint32_t day = (months & 0xFFFF) / 2141 + 1;
    const std::uint32_t year = 100 * century + yearOfCentury + isNextYear - 400;
    const std::uint32_t minute = seconds[i] / 60;
    const std::uint32_t hour = minute / 60;
    pairs[4 * i] = joined(year / 100, year % 100);
    pairs[4 * i + 1] = joined(month, day);
    pairs[4 * i + 2] = joined(0, hour);
    pairs[4 * i + 3] = joined(minute - 60 * hour, seconds[i] - 60 * minute);
  }
}

// Compiled once for all processors and once for those with wider registers.
using Cut = void (*)(std::span<const std::uint32_t>, const std::uint32_t*, std::uint32_t*);

void cutPortably(std::span<const std::uint32_t> days, const std::uint32_t* seconds,
                 std::uint32_t* pairs) {
  cut(days, seconds, pairs);
}

#if defined(__x86_64__)
[[gnu::target("avx2")]] void cutWide(std::span<const std::uint32_t> days,
                                     const std::uint32_t* seconds, std::uint32_t* pairs) {
  cut(days, seconds, pairs);
}
#endif

Cut fastestCut() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) {
    return cutWide;
  }
#endif
  return cutPortably;
}

}  // namespace

void cutMoments(std::span<const std::uint32_t> days, const std::uint32_t* seconds,
                std::uint32_t* pairs) {
  static const Cut fastest = fastestCut();
  fastest(days, seconds, pairs);
}

}  // namespace kelvarin::kernels
