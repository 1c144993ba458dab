#include "actions/frame/attributes.h"

#include <limits>

#include "host/contract/attribute_reading.h"
#include "host/contract/one_row.h"

namespace kelvarin {

namespace {

void writeText(std::wostream& out, const char16_t* name, const std::wstring& value) {
  out << L' ' << QString::fromUtf16(name).toStdWString() << L"='" << value << L'\'';
}

}  // namespace

void readAttribute(const XMLNode& node, const char16_t* name, bool& value) {
  value = xmltob(node.getAttribute(utf16(name)), value ? 1 : 0) != 0;
}

void readAttribute(const XMLNode& node, const char16_t* name, int& value) {
  value = xmltoi(node.getAttribute(utf16(name)), value);
}

void readAttribute(const XMLNode& node, const char16_t* name, double& value) {
  value = xmltof(node.getAttribute(utf16(name)), value);
}

void readAttribute(const XMLNode& node, const char16_t* name, CutNumber& value) {
  const double number = xmltof(node.getAttribute(utf16(name)), value.value);
  constexpr double limit = std::numeric_limits<int>::max();
  if (number >= -limit && number <= limit) {
    value.value = static_cast<int>(number);
  } else if (AttributeReading* reading = AttributeReading::current()) {
    reading->cannotUse(node.getAttribute(utf16(name)), "a number below 2147483648");
  }
}

void readAttribute(const XMLNode& node, const char16_t* name, QString& value) {
  if (const unsigned short* text = node.getAttribute(utf16(name))) {
    value = qString(text);
  }
}

void checkAllowed(const XMLNode& node, const char16_t* name, int value,
                  const AllowedNumbers& allowed) {
  AttributeReading* reading = AttributeReading::current();
  const unsigned short* text = node.getAttribute(utf16(name));
  if (reading != nullptr && text != nullptr && (value < allowed.least || value > allowed.most)) {
    reading->cannotUse(text, allowed.wanted, allowed.effect);
  }
}

void writeAttribute(std::wostream& out, const char16_t* name, bool value) {
  writeText(out, name, value ? L"1" : L"0");
}

void writeAttribute(std::wostream& out, const char16_t* name, int value) {
  writeText(out, name, std::to_wstring(value));
}

void writeAttribute(std::wostream& out, const char16_t* name, double value) {
  writeText(out, name, shortestText(value).toStdWString());
}

void writeAttribute(std::wostream& out, const char16_t* name, CutNumber value) {
  writeAttribute(out, name, value.value);
}

void writeAttribute(std::wostream& out, const char16_t* name, const QString& value) {
  ToXMLStringTool escape;
  writeText(out, name, escape.toXML(value));
}

}  // namespace kelvarin
