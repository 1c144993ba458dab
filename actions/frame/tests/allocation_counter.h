// Counts what the whole test program allocates.
#pragma once

namespace kelvarin::testing {

long long allocationsSoFar();

}  // namespace kelvarin::testing
