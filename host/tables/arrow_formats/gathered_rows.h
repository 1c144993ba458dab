// Rows as the writers of Parquet and Arrow files take them: the columns of a batch without a
// selection.
//
// Used by: RowGroup, which collects them.
#pragma once

#include <vector>

#include "host/contract/batch_steps.h"

namespace kelvarin {

struct GatheredRows final : EncodedBatch {
  std::size_t rowCount = 0;
  std::size_t textBytes = 0;  // of all texts, without their counts
  std::vector<BatchColumn> columns;
};

class GatheringEncoder final : public BatchEncoder {
 public:
  // Returns GatheredRows.
  std::unique_ptr<EncodedBatch> encode(const RowBatch& batch) const override;
};

}  // namespace kelvarin
