// A source whose rows cost next to nothing: three number columns made by counting.
//
// Used by the benchmark to time the engine and the actions without files.
// XML: <GeneratedRows name='...' rows='5000000'/>
#pragma once

#include <QStringList>

#include "host/contract/action_item.h"

namespace kelvarin {

class GeneratedRows : public ActionItem {
 public:
  GeneratedRows(XMLNode node, GlobalParameters* parameters);

  const char* typeName() const override { return "GeneratedRows"; }
  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  void setComputeRoutine() override { computeRoutine = &GeneratedRows::announce; }
  float computeCompletion() const override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 private:
  static bool announce(ActionItem* action);
  static bool giveRow(ActionItem* action);
  void fill();

  const int m_rows;
  int m_given = 0;
  double m_id = 0.0;
  double m_price = 0.0;
  double m_quantity = 0.0;
};

}  // namespace kelvarin
