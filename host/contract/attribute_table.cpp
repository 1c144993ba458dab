#include "host/contract/attribute_table.h"

#include "host/contract/one_row.h"

namespace kelvarin {

void setValue(bool& value, const QString& text) {
  value = xmltob(text.utf16(), value ? 1 : 0) != 0;
}

void setValue(int& value, const QString& text) {
  value = xmltoi(text.utf16(), value);
}

void setValue(double& value, const QString& text) {
  value = xmltof(text.utf16(), value);
}

void setValue(CutNumber& value, const QString& text) {
  const double number = xmltof(text.utf16(), value.value);
  constexpr double limit = std::numeric_limits<int>::max();
  if (number >= -limit && number <= limit) {
    value.value = static_cast<int>(number);
  }
}

void setValue(MetaTypeColumn& value, const QString& text) {
  const QChar code(xmltoc(text.utf16(), 0));
  if (code.unicode() < 0x80 && code.isLetterOrNumber()) {
    value = static_cast<MetaTypeColumn>(code.unicode());
  }
}

void setValue(QString& value, const QString& text) {
  value = text;
}

QString textOfValue(bool value) {
  return value ? QStringLiteral("1") : QStringLiteral("0");
}

QString textOfValue(int value) {
  return QString::number(value);
}

QString textOfValue(double value) {
  return shortestText(value);
}

QString textOfValue(CutNumber value) {
  return QString::number(value.value);
}

QString textOfValue(MetaTypeColumn value) {
  return QString(QChar(static_cast<char16_t>(value)));
}

std::optional<QString> attributeText(const XMLNode& node, const char16_t* name, AttributeKind kind,
                                     const GlobalParameters* parameters) {
  const unsigned short* text = node.getAttribute(utf16(name));
  if (text == nullptr) {
    return std::nullopt;
  }
  const bool isExpanded = kind != AttributeKind::text && parameters != nullptr;
  return isExpanded ? parameters->expandString2(qString(text)) : qString(text);
}

void writeAttribute(std::wostream& out, const char16_t* name, const QString& value) {
  ToXMLStringTool escape;
  out << L' ' << QString::fromUtf16(name).toStdWString() << L"='" << escape.toXML(value) << L'\'';
}

}  // namespace kelvarin
