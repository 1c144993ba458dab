// Stands for an action whose type nobody offers, so that its graph can be opened all the same: it
// keeps its XML element and has as many pins as links need, and it cannot run.
//
// Used by: graph_document.cpp, when a graph with faults is opened.
#pragma once

#include "host/contract/action_item.h"

namespace kelvarin {

class MissingAction final : public ActionItem {
 public:
  MissingAction(XMLNode node, GlobalParameters* parameters);

  // A link goes to it.
  void needPin(bool isInput, int pin);

  const char* typeName() const override { return m_typeName.constData(); }
  QString toolTip() const override;
  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  void setComputeRoutine() override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 private:
  QByteArray m_typeName;
};

}  // namespace kelvarin
