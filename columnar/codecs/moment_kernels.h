// The loop that cuts moments into their components.
//
// Used by MomentPattern.
// Threads: any.
#pragma once

#include <cstdint>
#include <span>

namespace kelvarin::kernels {

// Days since January 1 of year 0, up to year 9999, and seconds of the day. Each moment becomes four
// numbers with two components: century and year, month and day, nothing and hour, minute and
// second; the first one stands in the lower 16 bits.
void cutMoments(std::span<const std::uint32_t> days, const std::uint32_t* seconds,
                std::uint32_t* pairs);

}  // namespace kelvarin::kernels
