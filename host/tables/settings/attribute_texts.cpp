#include "host/tables/settings/attribute_texts.h"

namespace kelvarin {

QString attributeOr(const XMLNode& node, const char16_t* name, const QString& otherwise) {
  const unsigned short* text = node.getAttribute(utf16(name));
  return text == nullptr ? otherwise : qString(text);
}

void saveAttribute(std::wostringstream& out, const wchar_t* name, const QString& value) {
  ToXMLStringTool escape;
  out << L' ' << name << L"='" << escape.toXML(value) << L'\'';
}

void checkWhileLoading(const XMLNode& node,
                       const std::function<QString(const TextExpansion&)>& check) {
  AttributeReading* reading = AttributeReading::current();
  if (reading == nullptr) {
    return;
  }
  const QString fault = check([reading](const QString& text) { return reading->expanded(text); });
  if (!fault.isEmpty()) {
    reading->refuse(node, fault);
  }
}

const std::vector<KnownElements> kNoElements{{QString(), {}}};

void checkContentWhileLoading(const XMLNode& node, std::span<const KnownElements> known) {
  AttributeReading* reading = AttributeReading::current();
  if (reading == nullptr) {
    return;
  }
  for (const UnknownContent& unknown : unknownContent(node, known)) {
    reading->refuse(unknown.element, unknown.message);
  }
}

}  // namespace kelvarin
