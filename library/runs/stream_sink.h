// The action whose rows leave through an Arrow stream; it replaces a sink of a graph.
//
// Threads: those of ActionItem and BatchSink.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "host/contract/described_action.h"
#include "library/arrow_streams/whole_table.h"
#include "library/errors/error_details.h"

namespace kelvarin {

// Who takes the rows of a run. Engine thread.
class BatchReceiver {
 public:
  virtual ~BatchReceiver() = default;
  // Once, before the first batch or the end.
  virtual void begin(const TableColumns& columns) = 0;
  // False: no more are wanted.
  virtual bool take(std::vector<OwnedArray> arrays) = 0;
  // There are no more, and the run goes on as it should.
  virtual void end() {}
};

// Names and types of a pin's rows.
TableColumns tableColumnsOf(const OneRow& row);

class StreamSink final : public Described<StreamSink, ActionItem>, public BatchSink {
 public:
  StreamSink(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  // Before the run.
  void setReceiver(std::shared_ptr<BatchReceiver> receiver, const BatchForm& form);
  // All rows go to the receiver at the end, and lie in these columns until then.
  void gatherIn(std::shared_ptr<WholeColumns> columns, const BatchForm& form);

  void setComputeRoutine() override { computeRoutine = &StreamSink::takeFirstBatch; }
  const BatchEncoder* encoder() const override {
    return m_whole ? &m_whole->encoder() : m_encoder.get();
  }

 private:
  static bool takeFirstBatch(ActionItem* action);
  static bool takeBatch(ActionItem* action);
  bool take(TakenBatch taken);
  std::vector<OwnedArray> arraysOf(TakenBatch taken);

  std::shared_ptr<BatchReceiver> m_receiver;
  std::unique_ptr<const BatchEncoder> m_encoder;
  std::optional<WholeTable> m_whole;
};

// Replaces the action, which must have no output pins, by a sink whose rows go to `receiver`.
Status<ErrorDetails> bindOutput(Graph& graph, int action, std::shared_ptr<BatchReceiver> receiver,
                                const BatchForm& form,
                                std::shared_ptr<WholeColumns> whole = nullptr);

}  // namespace kelvarin
