#include "gui/forms/edited_element.h"

#include <algorithm>
#include <sstream>

#include "host/contract/action_item.h"

namespace kelvarin {

namespace {

void write(const EditedElement& element, std::wostringstream& out) {
  ToXMLStringTool escape;
  out << L'<' << element.name.toStdWString();
  for (const auto& [name, value] : element.attributes) {
    out << L' ' << name.toStdWString() << L"='" << escape.toXML(value) << L'\'';
  }
  if (element.text.isEmpty() && element.children.empty()) {
    out << L"/>";
    return;
  }
  out << L'>' << elementText(element.text);
  for (const EditedElement& child : element.children) {
    write(child, out);
  }
  out << L"</" << element.name.toStdWString() << L'>';
}

}  // namespace

EditedElement EditedElement::of(const XMLNode& node) {
  EditedElement element;
  element.name = node.name();
  for (int i = 0; i < node.nAttribute(); ++i) {
    element.attributes.emplace_back(node.attributeName(i), node.attributeValue(i));
  }
  element.text = node.text();
  for (int i = 0; i < node.nChildNode(); ++i) {
    element.children.push_back(of(node.getChildNode(i)));
  }
  return element;
}

EditedElement EditedElement::of(ActionItem& action) {
  std::wostringstream out;
  action.saveXML(out, action.name());
  const auto saved = parseXml(QString::fromStdWString(out.str()).toUtf8());
  return of(saved ? *saved : action.node());
}

QString EditedElement::attribute(const QString& attributeName) const {
  const auto found =
      std::ranges::find(attributes, attributeName, &std::pair<QString, QString>::first);
  return found == attributes.end() ? QString() : found->second;
}

void EditedElement::setAttribute(const QString& attributeName, const QString& value) {
  const auto found =
      std::ranges::find(attributes, attributeName, &std::pair<QString, QString>::first);
  if (found == attributes.end()) {
    if (!value.isNull()) {
      attributes.emplace_back(attributeName, value);
    }
  } else if (value.isNull()) {
    attributes.erase(found);
  } else {
    found->second = value;
  }
}

QString EditedElement::shownValue(const AttributeDescription& described) const {
  const QString value = attribute(described.name);
  return value.isNull() ? described.defaultText : value;
}

void EditedElement::setShownValue(const AttributeDescription& described, const QString& typed) {
  const bool isDefault =
      described.defaultText.isNull() ? typed.isEmpty() : typed == described.defaultText;
  const QString before = attribute(described.name);
  const bool isAsBefore = !before.isNull() && typed == before;
  const QString given = typed.isNull() ? QStringLiteral("") : typed;  // null takes it away
  setAttribute(described.name, isDefault && !isAsBefore ? QString() : given);
}

QByteArray EditedElement::document() const {
  std::wostringstream out;
  write(*this, out);
  return QString::fromStdWString(out.str()).toUtf8();
}

}  // namespace kelvarin
