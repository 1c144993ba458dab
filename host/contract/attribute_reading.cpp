#include "host/contract/attribute_reading.h"

#include <utility>

namespace kelvarin {

namespace {

thread_local AttributeReading* currentReading = nullptr;

}  // namespace

AttributeReading::Scope::Scope(AttributeReading& reading)
    : m_outer(std::exchange(currentReading, &reading)) {}

AttributeReading::Scope::~Scope() {
  currentReading = m_outer;
}

AttributeReading* AttributeReading::current() {
  return currentReading;
}

void AttributeReading::ask(const QString& element, QStringView attribute) {
  QStringList& known = m_known[element];
  if (!known.contains(attribute)) {
    known += attribute.toString();
  }
}

std::vector<AttributeReading::Finding> AttributeReading::findings(const XMLNode& element) const {
  std::vector<Finding> found;
  std::vector<XMLNode> open{element};
  while (!open.empty()) {
    const XMLNode node = open.back();
    open.pop_back();
    addFindings(node, found);
    for (int i = node.nChildNode() - 1; i >= 0; --i) {
      open.push_back(node.getChildNode(i));
    }
  }
  return found;
}

void AttributeReading::addFindings(const XMLNode& element, std::vector<Finding>& found) const {
  const auto known = m_known.constFind(element.name());
  if (known == m_known.constEnd()) {
    return;
  }
  for (int i = 0; i < element.nAttribute(); ++i) {
    const QString name = element.attributeName(i);
    if (!known->contains(name)) {
      found.push_back({element, name, *known});
    } else if (const OddValue odd = m_odd.value(element.getAttribute(name.utf16()));
               odd.wanted != nullptr) {
      found.push_back({element, name, {}, odd.wanted, odd.effect});
    }
  }
}

}  // namespace kelvarin
