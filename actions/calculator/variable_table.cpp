#include "actions/calculator/variable_table.h"

#include <QSet>

#include "actions/frame/messages.h"

namespace kelvarin {

namespace {

constexpr int kAliasColumn = 0;
constexpr int kNameColumn = 1;
constexpr int kCastColumn = 2;

// An action that the rows of the pin come from, or would have come from.
bool hasFailedAbove(const ActionItem& action, int pin) {
  std::vector<const ActionItem*> open{action.getActionItemOnInPin(pin)};
  QSet<const ActionItem*> seen{nullptr};
  while (!open.empty()) {
    const ActionItem* item = open.back();
    open.pop_back();
    if (seen.contains(item)) {
      continue;
    }
    if (item->hasFailed()) {
      return true;
    }
    seen.insert(item);
    for (int i = 0; i < item->inputPinCount(); ++i) {
      open.push_back(item->getActionItemOnInPin(i));
    }
  }
  return false;
}

}  // namespace

VariableTableRow variableTableRow(const OneRow& row) {
  VariableTableRow result;
  if (row.sz() == 0) {
    return result;
  }
  result.alias = row.col(kAliasColumn, nullptr);
  result.column = row.sz() > kNameColumn ? row.col(kNameColumn, nullptr) : result.alias;
  const QString cast = row.sz() > kCastColumn ? row.col(kCastColumn, nullptr) : QString();
  if (!cast.isEmpty()) {
    result.castCode = cast.front();
  }
  return result;
}

Result<InputVariable, QString> variableOf(const QString& alias, const QStringList& columns,
                                          QChar castCode) {
  InputVariable variable;
  variable.label = alias;
  variable.columns = columns;
  switch (castCode.unicode()) {
    case u'F':
    case u'K':
      return variable;
    case u'U':
      variable.isNumber = false;
      return variable;
    case u'D':
      variable.meta = MetaTypeColumn::date;
      return variable;
    default:
      return Failure{action_messages::unknownCastCode(alias, castCode)};
  }
}

Status<QString> readDefinitions(
    ActionItem& action, int pin, const VariableTableForm& form,
    const std::function<Status<QString>(const VariableTableRow&)>& take) {
  long long rowNumber = 0;
  while (const OneRow* row = action.getNextRowFromInPin(pin)) {
    if (row->sz() < form.minColumns) {
      return Failure{form.tooNarrow};
    }
    const VariableTableRow definition = variableTableRow(*row);
    if (definition.column.isEmpty()) {
      return Failure{action_messages::variableWithoutColumn(rowNumber)};
    }
    if (auto taken = take(definition); !taken) {
      return taken;
    }
    ++rowNumber;
  }
  const bool hasRunEnded = action.run() != nullptr && !action.run()->isRunning();
  if (hasRunEnded || hasFailedAbove(action, pin)) {
    return Failure{QString()};
  }
  return Done{};
}

Status<QString> appendVariableTable(ActionItem& action, int pin,
                                    std::vector<InputVariable>& variables) {
  const auto append = [&](const VariableTableRow& definition) -> Status<QString> {
    auto variable = variableOf(definition.alias, {definition.column}, definition.castCode);
    if (!variable) {
      return Failure{variable.error()};
    }
    variables.push_back(std::move(variable.value()));
    return Done{};
  };
  return readDefinitions(action, pin, {}, append);
}

}  // namespace kelvarin
