// Settings that are attributes of an XML element: a table has one line for each, and the same line
// reads and writes it.
//
// A setting's default is what a default-constructed Settings holds. An absent attribute reads as
// the default, and an attribute is written only when the setting differs from it.
#pragma once

#include <ostream>
#include <span>

#include <QString>

#include "host/contract/xml_node.h"

namespace kelvarin {

// A whole number that files may hold with a fraction, which is cut off.
struct CutNumber {
  int value = 0;
  friend bool operator==(const CutNumber&, const CutNumber&) = default;
};

// Changes `value` when the attribute is there and can be read.
void readAttribute(const XMLNode& node, const char16_t* name, bool& value);
void readAttribute(const XMLNode& node, const char16_t* name, int& value);
void readAttribute(const XMLNode& node, const char16_t* name, double& value);
void readAttribute(const XMLNode& node, const char16_t* name, CutNumber& value);
void readAttribute(const XMLNode& node, const char16_t* name, QString& value);

// A blank, the name, "='", the value and "'".
void writeAttribute(std::wostream& out, const char16_t* name, bool value);
void writeAttribute(std::wostream& out, const char16_t* name, int value);
void writeAttribute(std::wostream& out, const char16_t* name, double value);
void writeAttribute(std::wostream& out, const char16_t* name, CutNumber value);
void writeAttribute(std::wostream& out, const char16_t* name, const QString& value);

// A line of a table; made by attribute().
template <typename Settings>
struct Attribute {
  const char16_t* name;
  void (*read)(const XMLNode& node, const char16_t* name, Settings& settings);
  void (*writeChanged)(std::wostream& out, const char16_t* name, const Settings& settings,
                       const Settings& defaults);
};

template <typename Settings, typename Value>
Settings ownerOf(Value Settings::*member);

// attribute<&Settings::member>(u"name")
template <auto kMember>
constexpr auto attribute(const char16_t* name) {
  using Settings = decltype(ownerOf(kMember));
  return Attribute<Settings>{name,
                             [](const XMLNode& node, const char16_t* key, Settings& settings) {
                               readAttribute(node, key, settings.*kMember);
                             },
                             [](std::wostream& out, const char16_t* key, const Settings& settings,
                                const Settings& defaults) {
                               if (settings.*kMember != defaults.*kMember) {
                                 writeAttribute(out, key, settings.*kMember);
                               }
                             }};
}

template <typename Settings>
using AttributeTable = std::span<const Attribute<Settings>>;

template <typename Settings>
void readAttributes(const XMLNode& node, AttributeTable<Settings> table, Settings& settings) {
  for (const Attribute<Settings>& line : table) {
    line.read(node, line.name, settings);
  }
}

template <typename Settings>
void writeAttributes(std::wostream& out, AttributeTable<Settings> table, const Settings& settings) {
  const Settings defaults;
  for (const Attribute<Settings>& line : table) {
    line.writeChanged(out, line.name, settings, defaults);
  }
}

}  // namespace kelvarin
