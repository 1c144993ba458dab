#include "actions/calculator_vectorized/calculator_vectorized.h"

#include "actions/frame/messages.h"

namespace kelvarin {

const CatalogueEntry& CalculatorVectorized::catalogue() {
  static const CatalogueEntry entry{
      .typeName = "CalculatorVectorized",
      .toolTip = "Add many new columns based on an expression",
      .helpId = "5_7_10_vectorized_calculator_h",
      .tag = "250_Data Mining (Modelling)",
      .keywords = {"vector", "exp", "expression", "column", "add", "new", "compute"},
      .fileType = nullptr,
      .image = ":/KelvarinMathParser/calculatorVectorized.svg",
      .version = 2.08};
  return entry;
}

CalculatorVectorized::CalculatorVectorized(XMLNode node, GlobalParameters* parameters)
    : Catalogued(node, parameters, QStringLiteral("\"NewVar_\"//_n")) {}

char CalculatorVectorized::init() {
  Calculator::init();
  logError(messages::runningNotAvailable(QString::fromLatin1(typeName()), name()));
  return 1;
}

}  // namespace kelvarin
