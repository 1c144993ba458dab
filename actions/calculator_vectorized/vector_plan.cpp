#include "actions/calculator_vectorized/vector_plan.h"

#include "actions/calculator_vectorized/vector_rows.h"
#include "actions/frame/messages.h"
#include "host/contract/host_services.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

Result<TableVariables, QString> VectorPlan::readTable() {
  const Status<QString> read =
      m_tables.ofPrimary == nullptr ? readOwnTable() : takeTableOfPrimary();
  if (!read) {
    return Failure{read.error()};
  }
  return TableVariables{m_vectors.variables, m_vectors.elementCount};
}

// Copies go on only when a failure is logged and the run marked, so that they end without a word.
Status<QString> VectorPlan::readOwnTable() {
  auto table = readVectorTable(m_action, 1);
  if (!table) {
    if (!table.error().isEmpty()) {
      MainUI::addLog(LogLevel::error, table.error());
    }
    m_action.failRun();
    m_tables.own.publish({});
    return Failure{QString()};
  }
  m_vectors = std::move(table.value());
  if (m_vectors.elementCount == 1) {
    MainUI::addLog(LogLevel::warning, action_messages::noVectors());
  }
  m_tables.own.publish(m_vectors);
  return Done{};
}

Status<QString> VectorPlan::takeTableOfPrimary() {
  const VectorTable* table = m_tables.ofPrimary->waitForTable();
  if (m_action.run() != nullptr && !m_action.run()->isRunning()) {
    return Failure{QString()};
  }
  if (table == nullptr) {
    return Failure{action_messages::vectorTableNotRead()};
  }
  m_vectors = *table;
  return Done{};
}

// A new column for each output of each element; `update` has no meaning here.
Result<std::vector<OutputVariable>, QString> VectorPlan::columnsOf(
    const std::vector<OutputVariable>& outputs) {
  QStringList nameExpressions;
  for (const OutputVariable& output : outputs) {
    nameExpressions.append(output.name);
  }
  const auto names = nameColumns(m_vectors, nameExpressions, m_rules);
  if (!names) {
    return Failure{names.error()};
  }
  reportColumns(names.value());
  std::vector<OutputVariable> columns;
  columns.reserve(static_cast<std::size_t>(names->size()));
  for (const QString& name : names.value()) {
    OutputVariable column;
    column.name = name;
    column.meta = outputs[columns.size() % outputs.size()].meta;
    columns.push_back(std::move(column));
  }
  return columns;
}

void VectorPlan::reportColumns(const QStringList& names) const {
  HostServices* services = hostServices();
  if (!m_action.mustComputeFull() && services != nullptr) {
    services->columnsNamed(m_action, names);
  }
}

std::unique_ptr<RowComputation> VectorPlan::connect(const OutputColumns& columns) {
  return std::make_unique<VectorRows>(m_action, m_evaluator.rows,
                                      m_evaluator.expressions.outputCount(), m_vectors.elementCount,
                                      columns);
}

}  // namespace kelvarin
