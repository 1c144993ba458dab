// Counts what the whole test program allocates, the C library's calls included.
#pragma once

#include "host/contract/batch_steps.h"

namespace kelvarin::testing {

long long allocationsSoFar();
// What the stage allocates for all rows of the batch; negative where it leaves some.
long long allocationsOf(const BatchStage& stage, const RowBatch& batch);

}  // namespace kelvarin::testing
