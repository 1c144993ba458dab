#include "gui/window/expression_step.h"

#include <utility>

#include "gui/forms/edited_element.h"

namespace kelvarin {

namespace {

EditedElement elementOf(const RowCondition::Variable& variable) {
  EditedElement element;
  element.name = QStringLiteral("InputVar");
  element.setAttribute(QStringLiteral("column"), variable.column);
  if (variable.name != variable.column) {
    element.setAttribute(QStringLiteral("label"), variable.name);
  }
  if (variable.type == MetaTypeColumn::text) {
    element.setAttribute(QStringLiteral("isNumber"), QStringLiteral("0"));
  }
  return element;
}

EditedElement elementWithText(const QString& name, const QString& text) {
  EditedElement element;
  element.name = name;
  element.text = text;
  return element;
}

EditedElement elementAround(const QString& name, std::vector<EditedElement> children) {
  EditedElement element;
  element.name = name;
  element.children = std::move(children);
  return element;
}

}  // namespace

QByteArray filterElement(const RowCondition& condition) {
  std::vector<EditedElement> variables;
  variables.reserve(condition.variables.size());
  for (const RowCondition::Variable& variable : condition.variables) {
    variables.push_back(elementOf(variable));
  }
  return elementAround(QStringLiteral("FilterRows"),
                       {elementWithText(QStringLiteral("Expression"), condition.expression),
                        elementAround(QStringLiteral("InputVars"), std::move(variables))})
      .document();
}

QByteArray calculatorElement(const PinColumns::Column& column) {
  const RowCondition::Variable variable = variableFor(column);
  EditedElement output = elementWithText(QStringLiteral("OutputVar"), variable.name);
  output.setAttribute(QStringLiteral("name"), QStringLiteral("new_%1").arg(column.name));
  if (column.meta == MetaTypeColumn::text) {
    output.setAttribute(QStringLiteral("meta"), QStringLiteral("U"));
  }
  return elementAround(QStringLiteral("Calculator"),
                       {elementAround(QStringLiteral("InputVars"), {elementOf(variable)}),
                        elementAround(QStringLiteral("OutputVars"), {output})})
      .document();
}

}  // namespace kelvarin
