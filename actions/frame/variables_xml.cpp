#include "actions/frame/variables_xml.h"

#include "actions/frame/messages.h"
#include "host/contract/attribute_table.h"
#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

constexpr AllowedValues kOutputTypes{
    .codes = "FKU", .inWords = "F (number), K (key) or U (text)", .effectOfOthers = kCountsAsText};

constexpr Attribute<InputVariable> kInputAttributes[] = {
    attribute<&InputVariable::label2>(u"label2", "a second label, without effect; editors keep it"),
    attribute<&InputVariable::isNumber>(u"isNumber", "0: the variable is a text"),
    attribute<&InputVariable::meta>(
        u"meta", "D: a text column with dates that enters as an elapsed time", kInputTypes),
};

constexpr Attribute<OutputVariable> kOutputAttributes[] = {
    attribute<&OutputVariable::meta>(u"meta", "the column's type", kOutputTypes),
    attribute<&OutputVariable::isInput>(u"isInput", "without effect; editors keep it"),
    attribute<&OutputVariable::update>(u"update", "replaces the input column of this name"),
    attribute<&OutputVariable::notes>(u"notes", "the user's notes"),
};

QString attributeOf(const XMLNode& node, const char16_t* name) {
  return attributeText(node, name, AttributeKind::text, nullptr).value_or(QStringLiteral(""));
}

// The empty node where there are not so many.
XMLNode childAt(const XMLNode& parent, const char16_t* name, int index) {
  for (int i = 0; i < parent.nChildNode(); ++i) {
    const XMLNode child = parent.getChildNode(i);
    if (child.name() == QStringView(name) && index-- == 0) {
      return child;
    }
  }
  return {};
}

template <typename Read>
void forEachChild(const XMLNode& parent, const char16_t* name, Read read) {
  for (int i = 0; i < parent.nChildNode(); ++i) {
    const XMLNode child = parent.getChildNode(i);
    if (child.name() == QStringView(name)) {
      read(child);
    }
  }
}

QStringList readColumns(const XMLNode& node) {
  const QString column = attributeOf(node, u"column");
  const QStringList columns = node.nChildNode() > 0 ? fromXMLSL(node) : QStringList();
  return columns.isEmpty() ? QStringList{column} : columns;
}

InputVariable readInputVariable(const XMLNode& node, const GlobalParameters* parameters) {
  InputVariable variable;
  variable.columns = readColumns(node);
  variable.label = attributeOf(node, u"label");
  if (variable.label.isEmpty()) {
    variable.label = variable.columns.last();
  }
  readAttributes<InputVariable>(node, kInputAttributes, variable, parameters);
  if (variable.isNumber) {
    readAttribute(node, u"value", variable.number, parameters);
  } else {
    readAttribute(node, u"value", variable.text, parameters);
  }
  return variable;
}

OutputVariable readOutputVariable(const XMLNode& node, const QStringList& newNames,
                                  const GlobalParameters* parameters) {
  OutputVariable variable;
  variable.name = attributeOf(node, u"name");
  variable.expression = node.text();
  if (variable.expression.trimmed().isEmpty()) {
    variable.expression = attributeOf(node, u"expression");
  }
  readAttributes<OutputVariable>(node, kOutputAttributes, variable, parameters);
  if (const auto isNumber =
          attributeText(node, u"isNumber", AttributeKind::wholeNumber, parameters)) {
    variable.meta =
        xmltoi(isNumber->utf16(), 1) != 0 ? MetaTypeColumn::number : MetaTypeColumn::text;
  }
  if (variable.expression.trimmed().isEmpty() && !newNames.contains(variable.name)) {
    variable.expression = missingValueExpression(variable.meta);
  }
  return variable;
}

}  // namespace

ElementDescription stringListElement(const QString& textMeaning) {
  ElementDescription text{.name = QStringLiteral("S"),
                          .meaning = QStringLiteral("one of the texts"),
                          .textMeaning = textMeaning,
                          .mayRepeat = true};
  return {.name = QStringLiteral("SL"),
          .meaning = QStringLiteral("a list of texts"),
          .children = {std::move(text)}};
}

ElementDescription inputVarElement() {
  ElementDescription element{
      .name = QString::fromUtf16(kInputVar),
      .meaning = QStringLiteral("a variable of the expressions, bound to a column"),
      .mayRepeat = true,
      .children = {stringListElement(
          QStringLiteral("the name of a column, where the variable has several"))}};
  element.attributes = {
      {QStringLiteral("column"), AttributeKind::text, QStringLiteral("the column"),
       QStringLiteral("")},
      {QStringLiteral("label"), AttributeKind::text,
       QStringLiteral("its name in expressions; without it the column's name"), QString()}};
  describe<InputVariable>(element.attributes, kInputAttributes);
  element.attributes.push_back({QStringLiteral("value"), AttributeKind::sample,
                                QStringLiteral("the sample with which a check evaluates"),
                                QStringLiteral("")});
  return element;
}

ElementDescription inputVarsElement() {
  return {.name = QString::fromUtf16(kInputVars),
          .meaning = QStringLiteral("the variables of the expressions"),
          .children = {inputVarElement()}};
}

ElementDescription outputVarsElement() {
  ElementDescription element{.name = QString::fromUtf16(kOutputVar),
                             .meaning = QStringLiteral("a column that an expression makes"),
                             .textMeaning = QStringLiteral("the expression"),
                             .mayRepeat = true};
  element.attributes = {{QStringLiteral("name"), AttributeKind::text,
                         QStringLiteral("the column's name"), QStringLiteral("")}};
  describe<OutputVariable>(element.attributes, kOutputAttributes);
  element.attributes.push_back(
      {QStringLiteral("expression"), AttributeKind::text,
       QStringLiteral("the expression in older files, where the element has no text"),
       QStringLiteral("")});
  element.attributes.push_back(
      {QStringLiteral("isNumber"), AttributeKind::wholeNumber,
       QStringLiteral("in older files, instead of meta: 0 a text, else a number"), QString()});
  return {.name = QString::fromUtf16(kOutputVars),
          .meaning = QStringLiteral("the columns that expressions make"),
          .children = {std::move(element)}};
}

std::vector<InputVariable> readInputVariables(const XMLNode& parent,
                                              const GlobalParameters* parameters) {
  std::vector<InputVariable> variables;
  forEachChild(parent, kInputVar, [&](const XMLNode& child) {
    variables.push_back(readInputVariable(child, parameters));
  });
  return variables;
}

void writeInputVariable(std::wostringstream& out, const InputVariable& variable) {
  const bool hasOneColumn = variable.columns.size() == 1;
  out << L"    <InputVar";
  if (hasOneColumn) {
    writeAttribute(out, u"column", variable.columns.first());
  }
  if (!variable.columns.isEmpty() && variable.name() != variable.columns.last()) {
    writeAttribute(out, u"label", variable.label);
  }
  writeAttributes<InputVariable>(out, kInputAttributes, variable);
  const QString sample = variable.isNumber ? shortestText(variable.number) : variable.text;
  if (variable.isNumber ? variable.number != 0.0 : !sample.isEmpty()) {
    writeAttribute(out, u"value", sample);
  }
  if (hasOneColumn) {
    out << L"/>\n";
    return;
  }
  out << L'>';
  toXML(variable.columns, out);
  out << L"</InputVar>\n";
}

std::vector<OutputVariable> readOutputVariables(const XMLNode& parent, const QStringList& newNames,
                                                const GlobalParameters* parameters) {
  std::vector<OutputVariable> variables;
  forEachChild(parent, kOutputVar, [&](const XMLNode& child) {
    variables.push_back(readOutputVariable(child, newNames, parameters));
  });
  return variables;
}

void writeOutputVariable(std::wostringstream& out, const OutputVariable& variable) {
  out << L"    <OutputVar";
  writeAttribute(out, u"name", variable.name);
  writeAttributes<OutputVariable>(out, kOutputAttributes, variable);
  out << L'>' << elementText(variable.expression) << L"</OutputVar>\n";
}

XMLNode::Position positionOfInputVariable(const XMLNode& action, int index) {
  const XMLNode list = action.getChildNode(utf16(kInputVars));
  return childAt(list.isEmpty() ? action : list, kInputVar, index).position();
}

XMLNode::Position positionOfOutputVariable(const XMLNode& action, int index) {
  return childAt(action.getChildNode(utf16(kOutputVars)), kOutputVar, index).position();
}

std::vector<XMLNode> outputVariableElements(const XMLNode& action) {
  std::vector<XMLNode> elements;
  forEachChild(action.getChildNode(utf16(kOutputVars)), kOutputVar,
               [&](const XMLNode& child) { elements.push_back(child); });
  return elements;
}

bool hasExpression(const XMLNode& outputVariable) {
  return !outputVariable.text().trimmed().isEmpty() ||
         !attributeOf(outputVariable, u"expression").trimmed().isEmpty();
}

std::vector<ElementFault> faultsOfOutputVariables(const XMLNode& action) {
  std::vector<ElementFault> faults;
  for (const XMLNode& element : outputVariableElements(action)) {
    const QString text = element.text().trimmed();
    const QString attribute = attributeOf(element, u"expression").trimmed();
    if (!text.isEmpty() && !attribute.isEmpty() && text != attribute) {
      faults.push_back({LogLevel::warning, element,
                        action_messages::twoExpressionsOfOutput(attributeOf(element, u"name"))});
    }
  }
  return faults;
}

QString missingValueExpression(MetaTypeColumn meta) {
  const bool isNumber = meta == MetaTypeColumn::number || meta == MetaTypeColumn::key;
  return isNumber ? QStringLiteral("_null") : QStringLiteral("_nullS");
}

}  // namespace kelvarin
