#include "actions/calculator_vectorized/vector_table.h"

#include <algorithm>

#include "actions/frame/messages.h"

namespace kelvarin {

namespace {

// The type of a vector is the one in its first row.
class VectorGroups {
 public:
  Status<QString> add(const VariableTableRow& row) {
    if (m_columns.isEmpty() || row.alias != m_first.alias) {
      if (auto closed = close(); !closed) {
        return closed;
      }
      m_first = row;
    }
    m_columns.append(row.column);
    return Done{};
  }

  Status<QString> close() {
    if (m_columns.isEmpty()) {
      return Done{};
    }
    auto variable = variableOf(m_first.alias, m_columns, m_first.castCode);
    if (!variable) {
      return Failure{variable.error()};
    }
    variable->isVector = m_columns.size() > 1;
    m_variables.push_back(std::move(*variable));
    m_columns.clear();
    return Done{};
  }

  std::vector<InputVariable> takeVariables() { return std::move(m_variables); }

 private:
  VariableTableRow m_first;
  QStringList m_columns;  // of the vector whose rows are being read
  std::vector<InputVariable> m_variables;
};

int elementsOf(const InputVariable& variable) {
  return static_cast<int>(variable.columns.size());
}

int largestVector(const std::vector<InputVariable>& variables) {
  int largest = 1;
  for (const InputVariable& variable : variables) {
    largest = std::max(largest, elementsOf(variable));
  }
  return largest;
}

Result<VectorTable, QString> tableOf(VectorGroups& groups) {
  if (const auto closed = groups.close(); !closed) {
    return Failure{closed.error()};
  }
  VectorTable table;
  table.variables = groups.takeVariables();
  table.elementCount = largestVector(table.variables);
  const auto wrong = std::find_if(
      table.variables.rbegin(), table.variables.rend(), [&](const InputVariable& variable) {
        return variable.isVector && elementsOf(variable) != table.elementCount;
      });
  if (wrong != table.variables.rend()) {
    return Failure{action_messages::vectorOfWrongSize(wrong->name())};
  }
  return table;
}

}  // namespace

Result<VectorTable, QString> readVectorTable(ActionItem& action, int pin) {
  VectorGroups groups;
  const VariableTableForm form{kMinVectorTableColumns, action_messages::vectorTableTooNarrow()};
  const auto add = [&groups](const VariableTableRow& row) { return groups.add(row); };
  if (const auto read = readDefinitions(action, pin, form, add); !read) {
    return Failure{read.error()};
  }
  return tableOf(groups);
}

Result<VectorTable, QString> vectorTableOf(const std::vector<VariableTableRow>& rows) {
  VectorGroups groups;
  for (const VariableTableRow& row : rows) {
    if (const auto added = groups.add(row); !added) {
      return Failure{added.error()};
    }
  }
  return tableOf(groups);
}

}  // namespace kelvarin
