#include "benchmarks/generated_rows.h"

namespace kelvarin {

GeneratedRows::GeneratedRows(XMLNode node, GlobalParameters* parameters)
    : ActionItem(node, parameters), m_rows(xmltoi(node.getAttribute(utf16(u"rows")), 0)) {
  m_inputPinCount = 0;
  m_outputPinCount = 1;
  m_endpoint = static_cast<std::int32_t>(Endpoint::reader);
}

void GeneratedRows::saveXML(std::wostringstream& out, QString name) {
  saveAI(out, name, 1.0);
  out << L" rows='" << m_rows << L"'/>\n";
}

char GeneratedRows::init() {
  m_given = 0;
  return ActionItem::init();
}

float GeneratedRows::computeCompletion() const {
  return m_rows == 0 ? 1.0f : static_cast<float>(m_given) / static_cast<float>(m_rows);
}

ActionItem* GeneratedRows::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new GeneratedRows(node, parameters);
}

bool GeneratedRows::announce(ActionItem* action) {
  auto* self = static_cast<GeneratedRows*>(action);
  OneRow* row = self->getOutputRowForOutputPin(0);
  const MetaInfo number(MetaTypeColumn::number, 0);
  row->setNumberOfColumns(3);
  row->setColName({QStringLiteral("id"), QStringLiteral("price"), QStringLiteral("quantity")});
  row->setMetaData({number, number, number});
  unsigned char** values = row->getAllColForWrite();
  values[0] = reinterpret_cast<unsigned char*>(&self->m_id);
  values[1] = reinterpret_cast<unsigned char*>(&self->m_price);
  values[2] = reinterpret_cast<unsigned char*>(&self->m_quantity);
  self->announceColumnsOfOutputPin(0);
  if (!self->mustComputeFull()) {
    return true;
  }
  self->computeRoutine = &GeneratedRows::giveRow;
  return giveRow(action);
}

bool GeneratedRows::giveRow(ActionItem* action) {
  auto* self = static_cast<GeneratedRows*>(action);
  if (self->m_given == self->m_rows) {
    return true;
  }
  self->fill();
  self->setRowReadyForOutput(0);
  return false;
}

void GeneratedRows::fill() {
  m_id = m_given;
  m_price = (m_given % 10007) * 0.01;
  m_quantity = 1 + m_given % 17;
  ++m_given;
}

}  // namespace kelvarin
