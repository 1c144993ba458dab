// An action that knows rows alone, as those of other plug-ins do: passes rows on but for every n-th
// one, and finishes after `ends` of them.
//
// Used by drawn_graphs.h.
#pragma once

#include <algorithm>

#include "host/contract/action_item.h"

namespace kelvarin {

class RowAction final : public ActionItem {
 public:
  RowAction(XMLNode node, GlobalParameters* parameters) : ActionItem(node, parameters) {}

  const char* typeName() const override { return "RowAction"; }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new RowAction(node, parameters);
  }
  void setComputeRoutine() override {
    m_row = 0;
    m_drops = xmltoi(node().getAttribute(utf16(u"drops")), 0);
    m_ends = xmltoi(node().getAttribute(utf16(u"ends")), -1);
    computeRoutine = [](ActionItem* action) { return static_cast<RowAction*>(action)->step(); };
  }

 private:
  bool step() {
    const OneRow* row = getNextRowFromInPin(0);
    if (row == nullptr) {
      return true;
    }
    OneRow* out = getOutputRowForOutputPin(0);
    if (m_row == 0) {
      out->setNumberOfColumns(row->sz());
      out->setColName(row->getColNamesDeep());
      out->setMetaData(row->getMetaDataDeep());
      announceColumnsOfOutputPin(0);
    }
    ++m_row;
    if (m_drops == 0 || m_row % m_drops != 0) {
      std::copy_n(row->getAllColForRead(), row->sz(), out->getAllColForWrite());
      setRowReadyForOutput(0);
    }
    return m_row == m_ends;
  }

  long long m_row = 0;
  int m_drops = 0;
  int m_ends = -1;
};

}  // namespace kelvarin
