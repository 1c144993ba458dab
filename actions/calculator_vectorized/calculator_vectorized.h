// The calculator on vectors of columns: a table on pin 1 groups columns into vectors, every
// expression is evaluated for each element, and yields a column for each, whose name is an
// expression too.
//
// Parameters, XML and the course of a run are the calculator's; VectorPlan and VectorRows hold what
// differs at the first row and at every row.
// Threads: those of ActionItem. Where a host runs several copies, the primary reads the table and
// the others wait for it.
#pragma once

#include "actions/calculator/calculator.h"
#include "actions/calculator_vectorized/shared_vector_table.h"

namespace kelvarin {

class CalculatorVectorized : public Catalogued<CalculatorVectorized, Calculator> {
 public:
  CalculatorVectorized(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  char init() override;
  char close() override;
  void wakeAll() override;
  // Its outputs have expressions for names.
  bool renameMadeColumn(const QString&, const QString&) override { return false; }

 protected:
  std::unique_ptr<CalculatorPlan> makePlan() override;
  QString expressionFailureText(const RowFailure& failure) const override;
  QString checkText(const QString& output, const QString& text) const override;

 private:
  SharedVectorTable m_table;
};

}  // namespace kelvarin
