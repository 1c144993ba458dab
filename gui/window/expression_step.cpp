#include "gui/window/expression_step.h"

#include <algorithm>

#include <QRegularExpression>

#include "gui/forms/edited_element.h"

namespace kelvarin {

namespace {

EditedElement variable(const PinColumns::Column& column, const QString& label) {
  EditedElement element;
  element.name = QStringLiteral("InputVar");
  element.setAttribute(QStringLiteral("column"), column.name);
  if (label != column.name) {
    element.setAttribute(QStringLiteral("label"), label);
  }
  if (column.meta == MetaTypeColumn::text) {
    element.setAttribute(QStringLiteral("isNumber"), QStringLiteral("0"));
  }
  return element;
}

bool canStandInExpression(const QString& name) {
  static const QRegularExpression kName(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
  return kName.match(name).hasMatch();
}

// Texts in quotes name nothing.
QStringList namesIn(const QString& expression) {
  static const QRegularExpression kText(QStringLiteral("\"(?:[^\"\\\\]|\\\\.)*\""));
  static const QRegularExpression kName(QStringLiteral("[A-Za-z_][A-Za-z0-9_]*"));
  const QString bare = QString(expression).remove(kText);
  QStringList names;
  for (auto found = kName.globalMatch(bare); found.hasNext();) {
    names += found.next().captured();
  }
  return names;
}

EditedElement textElement(const QString& name, const QString& text) {
  EditedElement element;
  element.name = name;
  element.text = text;
  return element;
}

EditedElement variables(std::vector<EditedElement> inputs) {
  EditedElement element;
  element.name = QStringLiteral("InputVars");
  element.children = std::move(inputs);
  return element;
}

}  // namespace

QByteArray filterElement(const QString& condition, const PinColumns& columns) {
  const QStringList names = namesIn(condition);
  std::vector<EditedElement> inputs;
  for (const PinColumns::Column& column : columns.columns) {
    if (names.contains(column.name)) {
      inputs.push_back(variable(column, column.name));
    }
  }
  EditedElement filter;
  filter.name = QStringLiteral("FilterRows");
  filter.children = {textElement(QStringLiteral("Expression"), condition),
                     variables(std::move(inputs))};
  return filter.document();
}

QByteArray calculatorElement(const QString& column, const PinColumns& columns) {
  const auto known = std::ranges::find(columns.columns, column, &PinColumns::Column::name);
  const PinColumns::Column source =
      known == columns.columns.end() ? PinColumns::Column{column, MetaTypeColumn::number} : *known;
  const QString label = canStandInExpression(column) ? column : QStringLiteral("value");
  EditedElement output = textElement(QStringLiteral("OutputVar"), label);
  output.setAttribute(QStringLiteral("name"), QStringLiteral("new_%1").arg(column));
  if (source.meta == MetaTypeColumn::text) {
    output.setAttribute(QStringLiteral("meta"), QStringLiteral("U"));
  }
  EditedElement outputs;
  outputs.name = QStringLiteral("OutputVars");
  outputs.children = {std::move(output)};
  EditedElement calculator;
  calculator.name = QStringLiteral("Calculator");
  calculator.children = {variables({variable(source, label)}), std::move(outputs)};
  return calculator.document();
}

}  // namespace kelvarin
