// Encodes the rows of a batch for the files that they go to: one part for each value of the column
// by which the table is divided.
//
// Used by: TableSink.
// Threads: any.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/contract/batch_steps.h"

namespace kelvarin {

struct SplitBatch final : EncodedBatch {
  struct Part {
    std::string mark;  // of its value, see splitMark()
    std::unique_ptr<EncodedBatch> rows;
  };

  std::vector<Part> parts;
};

class SplitEncoder final : public BatchEncoder {
 public:
  // `encoder` makes what a file is written from. Of a table that is sorted, a part is a run of
  // equal values, so that one which comes back shows; else all rows of its value.
  SplitEncoder(std::unique_ptr<BatchEncoder> encoder, std::size_t column, bool isSorted)
      : m_encoder(std::move(encoder)), m_column(column), m_isSorted(isSorted) {}

  // Returns a SplitBatch, with its parts in the order of their first rows.
  std::unique_ptr<EncodedBatch> encode(const RowBatch& batch) const override;

 private:
  std::unique_ptr<BatchEncoder> m_encoder;
  std::size_t m_column;
  bool m_isSorted;
};

}  // namespace kelvarin
