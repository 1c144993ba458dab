// An expression that is true for rows like those that a user has chosen.
//
// Used for "Keep rows like this": the filter that is made of it has these input variables.
#pragma once

#include <optional>
#include <vector>

#include <QMetaType>
#include <QString>

#include "gui/preview/preview_rows.h"

namespace kelvarin {

struct RowCondition {
  struct Variable {
    QString column;
    QString name;  // in the expression: the column's own where it can be one
    MetaTypeColumn type = MetaTypeColumn::text;
  };
  QString expression;
  std::vector<Variable> variables;
};

// What was chosen of one column.
struct ChosenValues {
  PinColumns::Column column;
  std::vector<std::vector<unsigned char>> values;  // as rows hold them; empty: missing
};

// In each column one of its chosen values.
RowCondition conditionFor(const std::vector<ChosenValues>& chosen);

// The variable for a column that an expression names alone.
RowCondition::Variable variableFor(const PinColumns::Column& column);

}  // namespace kelvarin

Q_DECLARE_METATYPE(kelvarin::RowCondition)
