#include "ui/editors/pin_table.h"

#include <algorithm>
#include <chrono>

#include "actions/calculator/variable_table.h"
#include "actions/frame/messages.h"
#include "expression/errors/messages.h"
#include "ui/language/pin_row_view.h"

namespace kelvarin {

namespace {

constexpr std::chrono::seconds kMaxNamingTime{1};
constexpr int kNaming = 0;  // the only kind of job

// Each row a variable of its own.
Result<VectorTable, QString> scalarsOf(const std::vector<VariableTableRow>& rows) {
  VectorTable table;
  for (const VariableTableRow& row : rows) {
    auto variable = variableOf(row.alias, {row.column}, row.castCode);
    if (!variable) {
      return Failure{variable.error()};
    }
    table.variables.push_back(std::move(variable.value()));
  }
  return table;
}

}  // namespace

PinTable::PinTable(const ActionItem& action, bool isVectorized, QObject* parent)
    : QObject(parent),
      m_isVectorized(isVectorized),
      m_rows(action, 1, kMaxRows),
      m_table(VectorTable{}),
      m_worker(kMaxNamingTime) {
  m_table = readTable();
  connect(&m_rows, &InputRows::changed, this, [this] {
    m_table = readTable();
    emit changed();
  });
}

bool PinTable::isCut() const {
  return m_rows.rows() != nullptr &&
         m_rows.rows()->rowCount() >= static_cast<std::size_t>(kMaxRows);
}

Result<VectorTable, QString> PinTable::readTable() const {
  const std::shared_ptr<const PinRows> rows = m_rows.rows();
  if (rows == nullptr || rows->rowCount() == 0) {
    return VectorTable{};
  }
  if (m_isVectorized && rows->columnCount() < std::size_t{kMinVectorTableColumns}) {
    return Failure{action_messages::vectorTableTooNarrow()};
  }
  std::vector<VariableTableRow> definitions;
  PinRowView view(rows->columns());
  for (std::size_t i = 0; i < rows->rowCount(); ++i) {
    definitions.push_back(variableTableRow(view.show(*rows, i)));
    if (definitions.back().column.isEmpty()) {
      return Failure{action_messages::variableWithoutColumn(static_cast<long long>(i))};
    }
  }
  return m_isVectorized ? vectorTableOf(definitions) : scalarsOf(definitions);
}

int PinTable::longestVector() const {
  int longest = 0;
  if (m_table) {
    for (const InputVariable& variable : m_table->variables) {
      longest = std::max(longest, static_cast<int>(variable.columns.size()));
    }
  }
  return longest;
}

std::vector<InputVariable> PinTable::variablesOf(int element) const {
  std::vector<InputVariable> variables;
  if (!m_table) {
    return variables;
  }
  for (InputVariable variable : m_table->variables) {
    const int last = static_cast<int>(variable.columns.size()) - 1;
    variable.columns = {variable.columns[variable.isVector ? std::min(element, last) : last]};
    variable.isVector = false;
    variables.push_back(std::move(variable));
  }
  return variables;
}

void PinTable::nameColumns(const QStringList& nameExpressions, const EvaluationOptions& options,
                           const GlobalParameters& parameters) {
  if (!m_table) {
    emit columnsNamed(Failure{m_table.error()});
    return;
  }
  const auto compute = [this, table = m_table.value(), nameExpressions, options,
                        parameters](bool isCareful) -> std::function<void()> {
    if (isCareful) {
      return [this] { emit columnsNamed(Failure{tr("An earlier expression is still running.")}); };
    }
    NamingRules rules{options, &parameters,
                      [&parameters](const QString& name) { return parameters.expandString2(name); },
                      messages::formatUnknown()};
    const auto names = kelvarin::nameColumns(table, nameExpressions, rules);
    return [this, names] { emit columnsNamed(names); };
  };
  m_worker.run(kNaming,
               {compute, [this] {
                  emit columnsNamed(Failure{tr("The names take longer than a second to compute.")});
                }});
}

}  // namespace kelvarin
