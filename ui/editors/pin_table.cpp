#include "ui/editors/pin_table.h"

#include <algorithm>
#include <chrono>

#include "actions/calculator/variable_table.h"
#include "actions/frame/messages.h"
#include "expression/errors/messages.h"
#include "expression/functions/called_functions.h"
#include "ui/language/formula_check.h"
#include "ui/language/formula_evaluator.h"
#include "ui/language/messages.h"
#include "ui/language/pin_row_view.h"

namespace kelvarin {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kMaxNamingTime{1};
constexpr std::chrono::milliseconds kTimeForNames{700};
constexpr int kNaming = 0;  // the only kind of job

QString tooSlow() {
  return PinTable::tr("The names take longer than a second to compute.");
}

// Why an expression gets no names here; empty where it does.
QString obstacleTo(const Formula& name, Clock::time_point deadline) {
  const QString& expression = name.output.expression;
  if (const auto file = callOf(Source::files, expression)) {
    return language_messages::readsFile(
        expression.sliced(static_cast<qsizetype>(file->start), static_cast<qsizetype>(file->size)));
  }
  const FormulaAnswer answer = checkFormula(name, CheckDepth::evaluated, deadline);
  return answer.check.kind == ExpressionCheck::Kind::error ? answer.message : QString();
}

// A run waits for the names that are computed here, so they are checked before and bounded.
Result<QStringList, QString> namesOf(const VectorTable& table, const std::vector<Formula>& names,
                                     Clock::time_point deadline) {
  QStringList expressions;
  for (const Formula& name : names) {
    if (const QString obstacle = obstacleTo(name, deadline); !obstacle.isEmpty()) {
      return Failure{obstacle};
    }
    expressions += name.output.expression;
  }
  if (names.empty()) {
    return expressions;
  }
  const GlobalParameters& parameters = names.front().parameters;
  NamingRules rules{names.front().options,
                    &parameters,
                    [&](const QString& name) { return parameters.expandString2(name); },
                    messages::formatUnknown(),
                    FormulaEvaluator::bounds(),
                    [=] { return Clock::now() > deadline; }};
  auto named = nameColumns(table, expressions, rules);
  if (!named && named.error().isEmpty()) {
    return Failure{tooSlow()};
  }
  return named;
}

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

void PinTable::nameColumns(const std::vector<Formula>& names) {
  if (!m_table) {
    emit columnsNamed(Failure{m_table.error()});
    return;
  }
  const auto compute = [this, table = m_table.value(),
                        names](bool isCareful) -> std::function<void()> {
    if (isCareful) {
      return [this] { emit columnsNamed(Failure{tr("An earlier expression is still running.")}); };
    }
    const auto named = namesOf(table, names, Clock::now() + kTimeForNames);
    return [this, named] { emit columnsNamed(named); };
  };
  m_worker.run(kNaming, {compute, [this] { emit columnsNamed(Failure{tooSlow()}); }});
}

}  // namespace kelvarin
