// What an expression may name beside the libraries' own functions: variables, constants and the
// functions' memory.
//
// A variable hides a constant, and both hide what a library calls by the same name.
#pragma once

#include <vector>

#include <QSet>
#include <QString>

#include "expression/backends/variable_store.h"
#include "expression/functions/function_context.h"

namespace kelvarin {

struct NamedConstant {
  QString name;
  unsigned backends = 0;  // flags of function_line.h
  bool isText = false;
  double number = 0.0;
  QString text;  // null for the null text
};

struct ExpressionScope {
  VariableStore& variables;
  const std::vector<NamedConstant>& constants;
  FunctionContext& functions;
};

inline QSet<QString> namesOf(const VariableStore& variables) {
  QSet<QString> names;
  for (const StoredVariable& variable : variables.variables()) {
    names.insert(variable.name);
  }
  return names;
}

}  // namespace kelvarin
