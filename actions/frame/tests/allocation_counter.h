// Counts what the whole test program allocates, the C library's calls included.
#pragma once

#include "host/contract/batch_steps.h"

namespace kelvarin::testing {

long long allocationsSoFar();
// The stage takes all rows, and as many allocations for the batch as for a part of it.
void expectNoAllocationsForRows(const BatchStage& stage, const RowBatch& batch);

}  // namespace kelvarin::testing
