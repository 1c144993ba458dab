// The host action that reads rows and does nothing with them; its rows are counted like every
// action's.
#pragma once

#include <optional>

#include "host/contract/columns_in_hand.h"

namespace kelvarin {

class Discard final : public ActionItem {
 public:
  Discard(XMLNode node, GlobalParameters* parameters);

  const char* typeName() const override;
  QString toolTip() const override;
  QStringList getTags() const override;
  QStringList getKeywords() const override;
  void setComputeRoutine() override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 private:
  std::optional<ColumnsInHand> m_rows;  // none of their columns
};

}  // namespace kelvarin
