// The table of variables on a calculator's second pin: alias, column name and, optionally, how the
// column enters expressions ('F' and 'K' as a number, 'U' as a text, 'D' as a date).
#pragma once

#include <vector>

#include <QString>

#include "base/result.h"
#include "expression/evaluator/variables.h"
#include "host/contract/action_item.h"

namespace kelvarin {

struct VariableTableRow {
  QString alias;
  QString column;
  QChar castCode = u'F';
};

// A row of one column names both alias and column; an empty alias is the column's name.
VariableTableRow variableTableRow(const OneRow& row);

// The error is the text to log.
Result<InputVariable, QString> variableOf(const QString& alias, const QStringList& columns,
                                          QChar castCode);

// Pulls every row of the pin and appends one variable for each.
Status<QString> appendVariableTable(ActionItem& action, int pin,
                                    std::vector<InputVariable>& variables);

}  // namespace kelvarin
