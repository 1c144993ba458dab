// An Arrow stream that the library makes of batches which it computes while it is pulled.
//
// Threads: calls at the same time wait for each other.
// Errors: kept with their details until the next call; whatever is thrown ends here.
#pragma once

#include <memory>

#include "library/arrow_streams/exported_batch.h"
#include "library/errors/error_details.h"

namespace kelvarin {

// Where the batches come from. Destroyed with the stream.
class BatchSupply {
 public:
  virtual ~BatchSupply() = default;
  // Asked before the first batch, or never.
  virtual Outcome<TableColumns> columns() = 0;
  // A released array: there are no more. Not called again behind the end or a failure.
  virtual Outcome<OwnedArray> next() = 0;
};

void exportStream(std::unique_ptr<BatchSupply> supply, TextFormat texts, ArrowArrayStream& out);

// Null: the stream is not one of these, or has been released.
struct StreamState;
const StreamState* stateOf(const ArrowArrayStream& stream);
// Of the last call; nothing where it has not failed.
std::optional<ErrorDetails> lastErrorOf(const StreamState& state);

}  // namespace kelvarin
