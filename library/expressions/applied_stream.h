// The rows of a stream after expressions, computed while they are pulled.
//
// Few rows go through the compiled stages on the caller's thread, in microseconds; many go through
// a run of the actions, with tasks on other threads; and so do all rows from the first one on that
// the stages leave to the actions.
// Used by: the functions of the interface.
// Threads: those of BatchSupply.
#pragma once

#include <deque>
#include <memory>
#include <optional>

#include "library/arrow_streams/stream_reader.h"
#include "library/expressions/compiled_expressions.h"

namespace kelvarin {

struct ApplySettings {
  long long firstRow = 0;
  BatchForm form;
  WorkSettings work;
};

class AppliedStream final : public BatchSupply {
 public:
  AppliedStream(std::shared_ptr<CompiledExpressions> expressions, InputStream stream,
                ApplySettings settings);

  Outcome<TableColumns> columns() override { return m_expressions->outputColumns(); }
  Outcome<OwnedArray> next() override;

 private:
  enum class Step { more, end, runsFromHere };

  Outcome<Done> begin(InputStream stream);
  Outcome<Done> advance();
  Outcome<Step> takeUnit();
  Outcome<Step> process(const TableUnit& unit);
  Outcome<Done> runWith(InputStream stream);
  Outcome<Done> runFrom(RowBatchPointer pending, ReadFault failure);

  std::shared_ptr<CompiledExpressions> m_expressions;
  const ApplySettings m_settings;
  std::optional<InputStream> m_stream;     // until the first call
  std::unique_ptr<StreamReader> m_reader;  // of rows that go through the stages
  std::unique_ptr<PulledStream> m_run;     // of those that go through the actions
  long long m_nextRow;
  bool m_isOver = false;
  ArrayMemory m_memory;
  std::deque<OwnedArray> m_arrays;  // that were made, and nobody has taken
};

}  // namespace kelvarin
