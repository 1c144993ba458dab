#include "ui/panels/variable_cells.h"

#include <QCoreApplication>

#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

struct VariableTexts {
  Q_DECLARE_TR_FUNCTIONS(kelvarin::VariablesModel)
};

}  // namespace

QStringList variableTypeNames() {
  return {VariableTexts::tr("Number"), VariableTexts::tr("Text"), VariableTexts::tr("Date")};
}

QString typeNameOf(const InputVariable& variable) {
  return variableTypeNames()[static_cast<int>(kindOf(variable))];
}

void setType(InputVariable& variable, VariableKind kind) {
  if (kind == kindOf(variable)) {
    return;
  }
  const QString sample = sampleText(variable);
  if (kind == VariableKind::date) {
    variable.meta = MetaTypeColumn::date;
  } else if (variable.meta == MetaTypeColumn::date) {
    variable.meta = InputVariable().meta;
  }
  variable.isNumber = kind == VariableKind::number;
  (void)setSample(variable, sample);
}

QString columnText(const InputVariable& variable) {
  return variable.columns.isEmpty() ? QString() : variable.columns.last();
}

QString columnToolTip(const InputVariable& variable) {
  return variable.columns.size() < 2 ? columnText(variable)
                                     : VariableTexts::tr("Columns: %1. The last one is read.")
                                           .arg(variable.columns.join(", "));
}

QString sampleText(const InputVariable& variable) {
  if (!variable.isNumber) {
    return variable.text;
  }
  return variable.number == 0.0 ? QString() : shortestText(variable.number);
}

bool setSample(InputVariable& variable, const QString& text) {
  if (!variable.isNumber) {
    variable.text = text.isNull() ? QStringLiteral("") : text;
    return true;
  }
  bool isNumber = true;
  const double number = text.trimmed().isEmpty() ? 0.0 : text.trimmed().toDouble(&isNumber);
  if (isNumber) {
    variable.number = number;
  }
  return isNumber;
}

}  // namespace kelvarin
