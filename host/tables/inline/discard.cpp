#include "host/tables/inline/discard.h"

#include "host/tables/settings/attribute_texts.h"

namespace kelvarin {

Discard::Discard(XMLNode node, GlobalParameters* parameters) : ActionItem(node, parameters) {
  checkContentWhileLoading(node, kNoElements);
  m_inputPinCount = 1;
  m_outputPinCount = 0;
}

const char* Discard::typeName() const {
  return "Discard";
}

QString Discard::toolTip() const {
  return QStringLiteral("Count rows and drop them");
}

QStringList Discard::getTags() const {
  return {QStringLiteral("150_Standard")};
}

QStringList Discard::getKeywords() const {
  return {QStringLiteral("discard"), QStringLiteral("drop"), QStringLiteral("count"),
          QStringLiteral("row"),     QStringLiteral("null"), QStringLiteral("sink")};
}

void Discard::setComputeRoutine() {
  m_rows.emplace(std::vector<MetaTypeColumn>());
  computeRoutine = [](ActionItem* action) {
    const bool isAtEnd = action->getNextRowFromInPin(0) == nullptr;
    if (!isAtEnd) {
      static_cast<Discard*>(action)->m_rows->takeRows(*action, 0);
    }
    return isAtEnd;
  };
}

ActionItem* Discard::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new Discard(node, parameters);
}

}  // namespace kelvarin
