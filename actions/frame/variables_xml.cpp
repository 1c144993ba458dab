#include "actions/frame/variables_xml.h"

#include "actions/frame/attributes.h"
#include "actions/frame/messages.h"
#include "host/contract/attribute_reading.h"

namespace kelvarin {

namespace {

QString attribute(const XMLNode& node, const char16_t* name) {
  QString value = QStringLiteral("");
  readAttribute(node, name, value);
  return value;
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
  const QString column = attribute(node, u"column");
  const QStringList columns = node.nChildNode() > 0 ? fromXMLSL(node) : QStringList();
  return columns.isEmpty() ? QStringList{column} : columns;
}

InputVariable readInputVariable(const XMLNode& node) {
  InputVariable variable;
  variable.columns = readColumns(node);
  readAttribute(node, u"label", variable.label);
  if (variable.label.isEmpty()) {
    variable.label = variable.columns.last();
  }
  variable.label2 = attribute(node, u"label2");
  readAttribute(node, u"isNumber", variable.isNumber);
  variable.meta = readMeta(node, variable.meta, kInputMetas);
  if (variable.isNumber) {
    readAttribute(node, u"value", variable.number);
  } else {
    readAttribute(node, u"value", variable.text);
  }
  return variable;
}

MetaTypeColumn readOutputMeta(const XMLNode& node) {
  const MetaTypeColumn meta = readMeta(node, MetaTypeColumn::number, kOutputMetas);
  const unsigned short* isNumber = node.getAttribute(utf16(u"isNumber"));  // in older files
  if (isNumber != nullptr) {
    return xmltoi(isNumber, 1) != 0 ? MetaTypeColumn::number : MetaTypeColumn::text;
  }
  return meta;
}

QString readExpression(const XMLNode& node) {
  const QString text = node.text();
  const QString inAttribute = attribute(node, u"expression");
  return text.trimmed().isEmpty() ? inAttribute : text;
}

OutputVariable readOutputVariable(const XMLNode& node, const QStringList& newNames) {
  OutputVariable variable;
  variable.name = attribute(node, u"name");
  variable.expression = readExpression(node);
  variable.meta = readOutputMeta(node);
  readAttribute(node, u"isInput", variable.isInput);
  readAttribute(node, u"update", variable.update);
  variable.notes = attribute(node, u"notes");
  if (variable.expression.trimmed().isEmpty() && !newNames.contains(variable.name)) {
    variable.expression = missingValueExpression(variable.meta);
  }
  return variable;
}

}  // namespace

MetaTypeColumn readMeta(const XMLNode& node, MetaTypeColumn otherwise, const char* known) {
  const unsigned short* text = node.getAttribute(utf16(u"meta"));
  const QChar code(xmltoc(text, 0));
  const bool isCode = code.unicode() < 0x80 && code.isLetterOrNumber();
  AttributeReading* reading = AttributeReading::current();
  if (reading != nullptr && !code.isNull()) {
    const bool isKnown = QLatin1String(known).contains(code);
    const bool isAlone = reading->expanded(qString(text)).size() == 1;
    if (!isKnown || !isAlone) {
      const bool mayBeDate = QLatin1String(known).contains(u'D');
      reading->cannotUse(text,
                         mayBeDate ? action_messages::kInputMetasInWords
                                   : action_messages::kOutputMetasInWords,
                         isKnown ? action_messages::kFirstLetterCounts
                                 : action_messages::kCountsAsText);
    }
  }
  return isCode ? static_cast<MetaTypeColumn>(code.unicode()) : otherwise;
}

wchar_t metaCharacter(MetaTypeColumn meta) {
  return static_cast<wchar_t>(meta);
}

std::vector<InputVariable> readInputVariables(const XMLNode& parent) {
  std::vector<InputVariable> variables;
  forEachChild(parent, kInputVar,
               [&](const XMLNode& child) { variables.push_back(readInputVariable(child)); });
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
  if (!variable.label2.isEmpty()) {
    writeAttribute(out, u"label2", variable.label2);
  }
  if (!variable.isNumber) {
    writeAttribute(out, u"isNumber", false);
  }
  if (variable.meta != MetaTypeColumn::text) {
    out << L" meta='" << metaCharacter(variable.meta) << L'\'';
  }
  if (variable.isNumber && variable.number != 0.0) {
    writeAttribute(out, u"value", variable.number);
  }
  if (!variable.isNumber && !variable.text.isEmpty()) {
    writeAttribute(out, u"value", variable.text);
  }
  if (hasOneColumn) {
    out << L"/>\n";
    return;
  }
  out << L'>';
  toXML(variable.columns, out);
  out << L"</InputVar>\n";
}

std::vector<OutputVariable> readOutputVariables(const XMLNode& parent,
                                                const QStringList& newNames) {
  std::vector<OutputVariable> variables;
  forEachChild(parent, kOutputVar, [&](const XMLNode& child) {
    variables.push_back(readOutputVariable(child, newNames));
  });
  return variables;
}

void writeOutputVariable(std::wostringstream& out, const OutputVariable& variable) {
  ToXMLStringTool escape;
  out << L"    <OutputVar name='" << escape.toXML(variable.name);
  if (variable.meta != MetaTypeColumn::number) {
    out << L"' meta='" << metaCharacter(variable.meta);
  }
  if (variable.isInput) {
    out << L"' isInput='1";
  }
  if (variable.update) {
    out << L"' update='1";
  }
  if (!variable.notes.isEmpty()) {
    out << L"' notes='" << escape.toXML(variable.notes);
  }
  out << L"'>" << elementText(variable.expression) << L"</OutputVar>\n";
}

XMLNode::Place placeOfInputVariable(const XMLNode& action, int index) {
  const XMLNode list = action.getChildNode(utf16(kInputVars));
  return childAt(list.isEmpty() ? action : list, kInputVar, index).place();
}

XMLNode::Place placeOfOutputVariable(const XMLNode& action, int index) {
  return childAt(action.getChildNode(utf16(kOutputVars)), kOutputVar, index).place();
}

std::vector<XMLNode> outputVariableElements(const XMLNode& action) {
  std::vector<XMLNode> elements;
  forEachChild(action.getChildNode(utf16(kOutputVars)), kOutputVar,
               [&](const XMLNode& child) { elements.push_back(child); });
  return elements;
}

bool hasExpression(const XMLNode& outputVariable) {
  return !readExpression(outputVariable).trimmed().isEmpty();
}

QString missingValueExpression(MetaTypeColumn meta) {
  const bool isNumber = meta == MetaTypeColumn::number || meta == MetaTypeColumn::key;
  return isNumber ? QStringLiteral("_null") : QStringLiteral("_nullS");
}

}  // namespace kelvarin
