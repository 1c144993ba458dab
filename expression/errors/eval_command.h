// An expression with the values it was evaluated with, for people: a line of values, and the
// command that evaluates it again.
//
// Used by the actions behind an error.  Threads: any.
#pragma once

#include <vector>

#include <QString>
#include <QStringList>

namespace kelvarin {

struct TriedVariable {
  QString name;
  QString value;  // null for a missing value
  bool isText = false;
};

struct TriedExpression {
  QString expression;
  std::vector<TriedVariable> variables;
  QStringList options;  // NAME=VALUE of the attributes that are not as usual
  QString meta;         // of the result; empty where the value's own type will do
};

// `a = 1, s = "x", t = null`; long texts are cut. Empty without variables.
QString valuesText(const std::vector<TriedVariable>& variables);

// To be pasted into a shell.
QString evalCommand(const TriedExpression& tried);

}  // namespace kelvarin
