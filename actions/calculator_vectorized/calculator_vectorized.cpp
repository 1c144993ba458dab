#include "actions/calculator_vectorized/calculator_vectorized.h"

#include "expression/errors/messages.h"

namespace kelvarin {

const ActionDescription& CalculatorVectorized::catalogue() {
  static const ActionDescription entry{
      .typeName = "CalculatorVectorized",
      .toolTip = "Add many new columns based on an expression",
      .helpId = "5_7_10_vectorized_calculator_h",
      .tags = {"250_Data Mining (Modelling)"},
      .keywords = {"vector", "exp", "expression", "column", "add", "new", "compute"},
      .image = ":/KelvarinMathParser/calculatorVectorized.svg",
      .version = 2.08,
      .attributes = Calculator::catalogue().attributes,
      .children = Calculator::catalogue().children};
  return entry;
}

CalculatorVectorized::CalculatorVectorized(XMLNode node, GlobalParameters* parameters)
    : Catalogued(node, parameters, QStringLiteral("\"NewVar_\"//_n")) {}

char CalculatorVectorized::init() {
  m_vectors = {};
  m_results.clear();
  m_numberCells.clear();
  m_isTableRead = false;
  while (m_tableRead.try_acquire()) {  // permits of an earlier run
  }
  return Calculator::init();
}

char CalculatorVectorized::close() {
  releaseCopies();  // a primary without rows has read no table
  return Calculator::close();
}

void CalculatorVectorized::wakeAll() {
  releaseCopies();
}

QString CalculatorVectorized::expressionFailureText(const RowFailure& failure) const {
  return vectorizedErrorText(failure.name, failure.error, placeOf(failure));
}

QString CalculatorVectorized::checkText(const QString& output, const QString& text) const {
  return messages::vectorizedOpening(output) + text;
}

}  // namespace kelvarin
