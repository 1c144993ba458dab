// The table of variables on a calculator's second pin: alias, column name and, optionally, how the
// column enters expressions ('F' and 'K' as a number, 'U' as a text, 'D' as a date).
#pragma once

#include <functional>
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

// A row of one column names both alias and column. An empty alias stays one: the variable has the
// name of its column.
VariableTableRow variableTableRow(const OneRow& row);

// The error is the text to log.
Result<InputVariable, QString> variableOf(const QString& alias, const QStringList& columns,
                                          QChar castCode);

// What a table must be like for its reader.
struct VariableTableForm {
  int minColumns = 1;
  QString tooNarrow;  // the text to log about a table with fewer columns
};

// Pulls every row of the pin. The error is the text to log; it is empty where the table is not
// whole because the user stopped the run, or because an action above failed, which has logged why.
Status<QString> readDefinitions(
    ActionItem& action, int pin, const VariableTableForm& form,
    const std::function<Status<QString>(const VariableTableRow&)>& take);

// The same, and appends one variable for each row.
Status<QString> appendVariableTable(ActionItem& action, int pin,
                                    std::vector<InputVariable>& variables);

}  // namespace kelvarin
