#include "ui/language/column_variable.h"

#include <algorithm>

#include "expression/help/expression_hint.h"
#include "expression/tokens/expression_tokens.h"

namespace kelvarin {

namespace {

bool isTaken(const QString& name, const std::vector<InputVariable>& existing) {
  return std::any_of(existing.begin(), existing.end(),
                     [&](const InputVariable& variable) { return variable.name() == name; });
}

}  // namespace

InputVariable variableForColumn(const PinColumns::Column& column,
                                const std::vector<InputVariable>& existing) {
  InputVariable variable;
  variable.columns = {column.name};
  variable.isNumber = column.meta == MetaTypeColumn::number || column.meta == MetaTypeColumn::key;
  const QString name = variableNameFor(column.name);
  QString free = name;
  for (int number = 2; isTaken(free, existing); ++number) {
    free = name + u'_' + QString::number(number);
  }
  if (free != column.name) {
    variable.label = free;
  }
  return variable;
}

}  // namespace kelvarin
