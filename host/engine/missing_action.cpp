#include "host/engine/missing_action.h"

#include <algorithm>

#include "host/contract/attribute_table.h"
#include "host/contract/main_ui.h"
#include "host/engine/messages.h"

namespace kelvarin {

namespace {

constexpr int kMaxPins = 1000;

void writeElement(const XMLNode& node, std::wostringstream& out);

void writeContent(const XMLNode& node, std::wostringstream& out) {
  out << elementText(node.text());
  for (int i = 0; i < node.nChildNode(); ++i) {
    writeElement(node.getChildNode(i), out);
  }
}

void writeElement(const XMLNode& node, std::wostringstream& out) {
  const std::wstring name = node.name().toStdWString();
  ToXMLStringTool escape;
  out << L'<' << name;
  for (int i = 0; i < node.nAttribute(); ++i) {
    out << L' ' << node.attributeName(i).toStdWString() << L"='"
        << escape.toXML(node.attributeValue(i)) << L'\'';
  }
  if (node.nChildNode() == 0 && node.text().isEmpty()) {
    out << L"/>";
    return;
  }
  out << L'>';
  writeContent(node, out);
  out << L"</" << name << L'>';
}

}  // namespace

MissingAction::MissingAction(XMLNode node, GlobalParameters* parameters)
    : ActionItem(node, parameters), m_typeName(node.name().toUtf8()) {
  m_inputPinCount = 0;
  m_outputPinCount = 0;
}

void MissingAction::needPin(bool isInput, int pin) {
  std::int32_t& count = isInput ? m_inputPinCount : m_outputPinCount;
  count = std::max(count, std::min(pin + 1, kMaxPins));
}

QString MissingAction::toolTip() const {
  return engine_messages::missingActionType(QString::fromUtf8(m_typeName));
}

// The element as it was, with another name.
void MissingAction::saveXML(std::wostringstream& out, QString name) {
  ToXMLStringTool escape;
  const std::wstring type = m_node.name().toStdWString();
  out << L'<' << type << L" name='" << escape.toXML(name) << L'\'';
  for (int i = 0; i < m_node.nAttribute(); ++i) {
    if (m_node.attributeName(i) != u"name") {
      out << L' ' << m_node.attributeName(i).toStdWString() << L"='"
          << escape.toXML(m_node.attributeValue(i)) << L'\'';
    }
  }
  out << L'>';
  writeContent(m_node, out);
  out << L"</" << type << L">\n";
}

char MissingAction::init() {
  MainUI::addLog(LogLevel::error, toolTip());
  return 1;
}

void MissingAction::setComputeRoutine() {
  computeRoutine = [](ActionItem*) { return true; };
}

ActionItem* MissingAction::createFromXML(XMLNode node, GlobalParameters* parameters) {
  auto* copy = new MissingAction(node, parameters);
  copy->m_inputPinCount = m_inputPinCount;
  copy->m_outputPinCount = m_outputPinCount;
  return copy;
}

}  // namespace kelvarin
