// The calculator on vectors of columns: a table on pin 1 groups columns into vectors, every
// expression is evaluated for each element, and gives a column for each, whose name is an
// expression too.
//
// Parameters, XML and the course of a run are the calculator's; plan.cpp and row.cpp hold what
// differs at the first row and at every row.
// Threads: those of ActionItem. Where a host runs several copies, the primary reads the table and
// the others wait for it; what it read does not change afterwards.
#pragma once

#include <semaphore>

#include "actions/calculator/calculator.h"
#include "actions/calculator_vectorized/vector_table.h"

namespace kelvarin {

class CalculatorVectorized : public Catalogued<CalculatorVectorized, Calculator> {
 public:
  CalculatorVectorized(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  char init() override;
  char close() override;
  void wakeAll() override;

 protected:
  bool readVariableTable() override;
  NewColumns columnsOfOutputs(const std::vector<OutputVariable>& outputs) override;
  void connectResults(const OutputColumns& columns) override;
  RowStep evaluateRowOfAnyPlan(const OneRow& row) override;
  ComputeRoutine routineForRows() const override;
  QString expressionFailureText(const RowFailure& failure) const override;
  QString checkText(const QString& output, const QString& text) const override;

 private:
  // The current result of an output, and where the text of one goes.
  struct ElementResult {
    const unsigned char* cell = nullptr;  // of a number or key
    unsigned char* text = nullptr;
  };
  using NumberCell = double;  // or a key in its first bytes

  static constexpr int kPermits = 1000;  // more than a host runs copies

  bool readOwnTable();
  bool takeTableOfPrimary();
  void releaseCopies() { m_tableRead.release(kPermits); }
  void tellColumns(const QStringList& names) const;

  template <int kOutputs>
  static bool computeRow(ActionItem* action);
  template <int kOutputs>
  RowStep evaluateRow(const OneRow& row);
  void storeResults(int element, unsigned char** newColumns);

  VectorTable m_vectors;
  bool m_isTableRead = false;  // for copies: before they get their permit
  std::counting_semaphore<> m_tableRead{0};
  std::vector<ElementResult> m_results;   // of the current element, one an output
  std::vector<NumberCell> m_numberCells;  // of the row, element by element
};

}  // namespace kelvarin
