// The host action that reads rows and does nothing with them; its rows are counted like every
// action's.
#pragma once

#include <optional>

#include "host/contract/columns_in_hand.h"
#include "host/contract/described_action.h"

namespace kelvarin {

class Discard final : public Described<Discard, ActionItem> {
 public:
  Discard(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void setComputeRoutine() override;

 private:
  std::optional<ColumnsInHand> m_rows;  // none of their columns
};

}  // namespace kelvarin
