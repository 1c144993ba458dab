// The way of a batch through the actions of a straight chain, for the counts of rows.
//
// Actions work on whole batches, but a consumer may end in the midst of one. Rows count as handed
// from pin to pin when they are taken at the end of the chain, so that the counts are those of
// single rows. The trail leads from a batch to the one that it was made of.
// Used by: row_links.cpp, running_action.cpp.
// Threads: the engine thread.
#pragma once

#include <memory>

#include "host/contract/batch_steps.h"
#include "host/contract/pin_ports.h"

namespace kelvarin {

class BatchTrail {
 public:
  // Of rows that the pin publishes, or whose publishing has been counted already (null). They were
  // made of those of `parent` from its row `firstInParent` on.
  struct Origin {
    BatchTransform* maker = nullptr;  // null: they come from a source or a queue
    StageResult result;
    std::shared_ptr<BatchTrail> parent;
    std::size_t firstInParent = 0;
  };
  explicit BatchTrail(OutputPin* pin) : m_pin(pin) {}
  BatchTrail(OutputPin* pin, int pinIndex, Origin origin)
      : m_pin(pin), m_pinIndex(static_cast<std::size_t>(pinIndex)), m_origin(std::move(origin)) {}

  // The link that takes the rows counts them there.
  void arriveAt(long long& rowsRead) { m_rowsRead = &rowsRead; }
  // The first `rows` rows have been taken.
  void settle(std::size_t rows);
  // Somebody has asked for what comes after the last row, and so for the input behind it.
  void settleRest();
  // Somebody has asked for what comes after the first `rows` rows, which have been taken. The rest
  // counts only where they are all: others may have taken single rows behind them meanwhile.
  void settleAndAskOn(std::size_t rows);

 private:
  void settleInput();
  std::size_t rowCount() const;  // of a result
  std::size_t inputRowsFor(std::size_t rows) const;

  OutputPin* m_pin;
  std::size_t m_pinIndex = 0;
  Origin m_origin;
  long long* m_rowsRead = nullptr;
  std::size_t m_rowsSettled = 0;
  std::size_t m_inputRowsSettled = 0;
  bool m_isRestTaken = false;
};

using BatchTrailPointer = std::shared_ptr<BatchTrail>;

// A batch on its way from an output pin to the link that takes it.
struct PublishedBatch {
  RowBatchPointer batch;
  BatchTrailPointer trail;                // null: its rows are counted already
  std::unique_ptr<EncodedBatch> encoded;  // null: nobody has encoded it yet
};

// Of a result without rows for anybody: its input has been taken all the same.
void settleInput(BatchTrail::Origin& origin);

}  // namespace kelvarin
