// The calculator on vectors of columns: a table on pin 1 groups columns into vectors, and every
// output gives a column for each element, whose name is an expression too.
//
// Its row work is not built yet: init() says so. Parameters and XML are those of the calculator.
// Threads: those of ActionItem.
#pragma once

#include "actions/calculator/calculator.h"

namespace kelvarin {

class CalculatorVectorized : public Catalogued<CalculatorVectorized, Calculator> {
 public:
  CalculatorVectorized(XMLNode node, GlobalParameters* parameters);

  static const CatalogueEntry& catalogue();

  char init() override;
};

}  // namespace kelvarin
