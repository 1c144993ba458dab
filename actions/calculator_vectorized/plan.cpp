// The vectorized calculator at its first row: the vectors, and the names and results of the new
// columns.
#include "actions/calculator_vectorized/calculator_vectorized.h"
#include "actions/calculator_vectorized/column_names.h"
#include "actions/frame/messages.h"
#include "host/contract/host_services.h"

namespace kelvarin {

bool CalculatorVectorized::readVariableTable() {
  const bool isCopy = m_primary != nullptr && m_primary != this;
  if (!(isCopy ? takeTableOfPrimary() : readOwnTable())) {
    return false;
  }
  m_variables.insert(m_variables.end(), m_vectors.variables.begin(), m_vectors.variables.end());
  m_elementCount = m_vectors.elementCount;
  return true;
}

bool CalculatorVectorized::readOwnTable() {
  auto table = readVectorTable(*this, 1);
  if (table) {
    m_vectors = std::move(table.value());
    if (m_vectors.elementCount == 1) {
      MainUI::addLog(LogLevel::warning, messages::noVectors());
    }
  } else {
    if (!table.error().isEmpty()) {
      logError(table.error());
    }
    failRun();
  }
  m_isTableRead = true;
  releaseCopies();
  return static_cast<bool>(table);
}

bool CalculatorVectorized::takeTableOfPrimary() {
  auto& primary = static_cast<CalculatorVectorized&>(*m_primary);
  primary.m_tableRead.acquire();
  if (hasRunEnded()) {
    return false;
  }
  if (!primary.m_isTableRead) {
    logError(messages::vectorTableNotRead());
    return false;
  }
  m_vectors = primary.m_vectors;
  return true;
}

// A new column for each output of each element; `update` has no meaning here.
Calculator::NewColumns CalculatorVectorized::columnsOfOutputs(
    const std::vector<OutputVariable>& outputs) {
  QStringList nameExpressions;
  for (const OutputVariable& output : outputs) {
    nameExpressions.append(output.name);
  }
  const NamingRules rules{m_options, globalParameters(),
                          [this](const QString& name) { return expandString(name); },
                          dateFormatUnknownText()};
  const auto names = nameColumns(m_vectors, nameExpressions, rules);
  if (!names) {
    return Failure{names.error()};
  }
  tellColumns(names.value());
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

void CalculatorVectorized::tellColumns(const QStringList& names) const {
  HostServices* services = hostServices();
  if (isChecking() && services != nullptr) {
    services->columnsNamed(*this, names);
  }
}

// The columns of numbers point at their cells for the whole run; texts are stored through their
// column's slot.
void CalculatorVectorized::connectResults(const OutputColumns& columns) {
  const auto outputs = static_cast<std::size_t>(m_evaluator.expressions.outputCount());
  m_results.resize(outputs);
  m_numberCells.assign(columns.columnOfOutput.size(), kNullNumber);
  for (std::size_t i = 0; i < outputs; ++i) {
    const int output = static_cast<int>(i);
    if (isNumeric(m_outputs[i])) {
      m_results[i].cell = m_evaluator.rows.resultCell(output);
    } else {
      m_evaluator.rows.setTextTarget(output, &m_results[i].text);
    }
  }
  unsigned char** places = getOutputRowForOutputPin(0)->getAllColForWrite();
  for (std::size_t i = 0; i < columns.columnOfOutput.size(); ++i) {
    if (m_results[i % outputs].cell != nullptr) {
      places[columns.columnOfOutput[i]] = reinterpret_cast<unsigned char*>(&m_numberCells[i]);
    }
  }
  m_evaluator.rows.nameElements(columns.names.last(static_cast<qsizetype>(m_numberCells.size())));
}

}  // namespace kelvarin
