// The host action that reads rows and does nothing with them; its rows are counted like every
// action's.
#pragma once

#include "host/contract/batch_steps.h"
#include "host/contract/described_action.h"

namespace kelvarin {

class Discard final : public Described<Discard, ActionItem>, public BatchSink {
 public:
  Discard(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void setComputeRoutine() override;
};

}  // namespace kelvarin
