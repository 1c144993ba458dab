#include "gui/window/expression_step.h"

#include <utility>

#include <QCoreApplication>

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

QByteArray calculatorElement(const PinColumns::Column& column, const QString& name) {
  const RowCondition::Variable variable = variableFor(column);
  EditedElement output = elementWithText(QStringLiteral("OutputVar"), variable.name);
  output.setAttribute(QStringLiteral("name"), name);
  if (column.meta != MetaTypeColumn::number) {
    output.setAttribute(QStringLiteral("meta"), QString(QChar(static_cast<char>(column.meta))));
  }
  return elementAround(QStringLiteral("Calculator"),
                       {elementAround(QStringLiteral("InputVars"), {elementOf(variable)}),
                        elementAround(QStringLiteral("OutputVars"), {output})})
      .document();
}

ActionId addStepAt(GraphCommands& commands, const PinRef& pin, const QString& typeName,
                   const QByteArray& element) {
  if (pin.isOutput) {
    return commands.addLinked(typeName, pin, element);
  }
  ActionId added = kNoId;
  commands.together(QCoreApplication::translate("ExpressionStep", "Insert %1").arg(typeName), [&] {
    added = commands.insertIntoLink(typeName, commands.graph().linkInto(pin.action, pin.pin));
    if (added != kNoId) {
      commands.setElement(added, element);
    }
  });
  return added;
}

}  // namespace kelvarin
