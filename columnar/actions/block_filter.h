// The expression with which the reading action skips whole blocks, and its variables: for each key
// column the maximum and the minimum of a block, and whether it has nulls.
#pragma once

#include <sstream>
#include <vector>

#include "expression/evaluator/variables.h"
#include "host/contract/action_description.h"
#include "host/contract/global_parameters.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

struct BlockVariable {
  // Samples with which a check evaluates; the number is used when isNumber is set, else the text.
  struct Sample {
    double number = 0.0;
    QString text = QStringLiteral("");
  };

  explicit BlockVariable(const QString& columnName);

  QString column;
  QString maximumName;
  QString minimumName;
  QString hasNullName;
  bool isNumber = true;
  MetaTypeColumn meta = MetaTypeColumn::text;
  Sample maximum;
  Sample minimum;
};

struct BlockFilter {
  QString expression = QStringLiteral("");
  bool addRowNumbers = true;  // offers `_n_min` and `_n_max`
  TimeParameters time;
  std::vector<BlockVariable> variables;
};

// The variables of the expression: for each column the maximum, the minimum and the null flag; then
// the row numbers.
std::vector<InputVariable> inputsOf(const BlockFilter& filter);

// The element CFilterRows.
ElementDescription blockFilterElement();
BlockFilter readBlockFilter(const XMLNode& action, const GlobalParameters* parameters);
void writeBlockFilter(std::wostringstream& out, const BlockFilter& filter);

}  // namespace kelvarin
