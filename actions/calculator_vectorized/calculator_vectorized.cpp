#include "actions/calculator_vectorized/calculator_vectorized.h"

#include "actions/calculator_vectorized/vector_plan.h"
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
  m_table.clear();
  return Calculator::init();
}

char CalculatorVectorized::close() {
  m_table.releaseCopies();  // a primary without rows has read no table
  return Calculator::close();
}

void CalculatorVectorized::wakeAll() {
  m_table.releaseCopies();
}

std::unique_ptr<CalculatorPlan> CalculatorVectorized::makePlan() {
  const bool isCopy = m_primary != nullptr && m_primary != this;
  SharedVectorTable* ofPrimary =
      isCopy ? &static_cast<CalculatorVectorized&>(*m_primary).m_table : nullptr;
  NamingRules rules{m_options, globalParameters(),
                    [this](const QString& name) { return expandString(name); },
                    dateFormatUnknownText()};
  return std::make_unique<VectorPlan>(*this, m_evaluator, VectorPlan::Tables{m_table, ofPrimary},
                                      std::move(rules));
}

QString CalculatorVectorized::expressionFailureText(const RowFailure& failure) const {
  return vectorizedErrorText(failure.name, failure.error, locationOf(failure));
}

QString CalculatorVectorized::checkText(const QString& output, const QString& text) const {
  return messages::vectorizedOpening(output) + text;
}

}  // namespace kelvarin
