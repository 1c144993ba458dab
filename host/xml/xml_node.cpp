#include "host/xml/xml_node.h"

#include <utility>

#include "host/xml/xml_element.h"

using kelvarin::XmlElement;

namespace {

void acquire(XmlElement* element) {
  if (element != nullptr) {
    element->document->handles.fetch_add(1, std::memory_order_relaxed);
  }
}

void release(XmlElement* element) {
  if (element != nullptr &&
      element->document->handles.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete element->document;
  }
}

template <typename Item>
bool isIndexOf(int index, const std::vector<Item>& items) {
  return index >= 0 && static_cast<std::size_t>(index) < items.size();
}

// Searches from `*from`, which then is the index after the one found; -1 when there is none.
template <typename Items, typename Matches>
int findFrom(const Items& items, int* from, Matches matches) {
  const int first = from == nullptr ? 0 : std::max(0, *from);
  for (int i = first; static_cast<std::size_t>(i) < items.size(); ++i) {
    if (matches(items[static_cast<std::size_t>(i)])) {
      if (from != nullptr) {
        *from = i + 1;
      }
      return i;
    }
  }
  return -1;
}

}  // namespace

XMLNode XMLNode::emptyNode() {
  return {};
}
XMLNode::XMLNode() : m_element(nullptr) {}
XMLNode::XMLNode(XmlElement* element) : m_element(element) {
  acquire(m_element);
}
XMLNode::XMLNode(const XMLNode& other) : m_element(other.m_element) {
  acquire(m_element);
}
XMLNode::~XMLNode() {
  release(m_element);
}

XMLNode& XMLNode::operator=(const XMLNode& other) {
  acquire(other.m_element);
  release(std::exchange(m_element, other.m_element));
  return *this;
}

bool XMLNode::isEmpty() const {
  return m_element == nullptr;
}
QString XMLNode::name() const {
  return isEmpty() ? QString() : m_element->name;
}
XMLNode::Position XMLNode::position() const {
  return isEmpty() ? Position{} : m_element->position;
}

const unsigned short* XMLNode::getAttribute(const unsigned short* name, int* index) const {
  if (isEmpty() || name == nullptr) {
    return nullptr;
  }
  const QStringView wanted(name);
  const auto& attributes = m_element->attributes;
  const int found = findFrom(attributes, index, [wanted](const kelvarin::XmlAttribute& attribute) {
    return attribute.name == wanted;
  });
  return found < 0 ? nullptr : attributes[static_cast<std::size_t>(found)].value.utf16();
}

int XMLNode::nAttribute() const {
  return isEmpty() ? 0 : static_cast<int>(m_element->attributes.size());
}

QString XMLNode::attributeName(int index) const {
  return isEmpty() || !isIndexOf(index, m_element->attributes)
             ? QString()
             : m_element->attributes[static_cast<std::size_t>(index)].name;
}

QString XMLNode::attributeValue(int index) const {
  return isEmpty() || !isIndexOf(index, m_element->attributes)
             ? QString()
             : m_element->attributes[static_cast<std::size_t>(index)].value;
}

XMLNode XMLNode::getChildNode(const unsigned short* name, int* index) const {
  if (isEmpty() || name == nullptr) {
    return {};
  }
  const QStringView wanted(name);
  const int found = findFrom(m_element->children, index,
                             [wanted](const XmlElement* child) { return child->name == wanted; });
  return found < 0 ? XMLNode() : getChildNode(found);
}

XMLNode XMLNode::getChildNode(int index) const {
  return isEmpty() || !isIndexOf(index, m_element->children)
             ? XMLNode()
             : XMLNode(m_element->children[static_cast<std::size_t>(index)]);
}

int XMLNode::nChildNode() const {
  return isEmpty() ? 0 : static_cast<int>(m_element->children.size());
}

const unsigned short* XMLNode::getText(int index) const {
  return isEmpty() || !isIndexOf(index, m_element->texts)
             ? nullptr
             : m_element->texts[static_cast<std::size_t>(index)].utf16();
}

QString XMLNode::text() const {
  QString all;
  if (!isEmpty()) {
    for (const QString& run : m_element->texts) {
      all += run;
    }
  }
  return all;
}
