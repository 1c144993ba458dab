// Settings that are attributes of an XML element: a table has one line for each, and the same line
// reads and writes it.
//
// A setting's default is what a default-constructed Settings holds. An absent attribute reads as
// the default, and an attribute is written only when the setting differs from it.
#pragma once

#include <limits>
#include <ostream>
#include <span>

#include <QString>

#include "host/xml/xml_node.h"

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

// The values that a whole number may have. Others are errors of the graph, unless they have an
// effect of their own.
struct AllowedNumbers {
  int least = std::numeric_limits<int>::min();
  int most = std::numeric_limits<int>::max();
  const char* wanted = "";       // in words
  const char* effect = nullptr;  // what another value does; the user is warned
};

inline constexpr AllowedNumbers kZeroToTwo{0, 2, "0, 1 or 2"};

// Lets whoever loads the graph know about a value that is not allowed.
void checkAllowed(const XMLNode& node, const char16_t* name, int value,
                  const AllowedNumbers& allowed);

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

inline int wholeNumber(int value) {
  return value;
}
inline int wholeNumber(CutNumber value) {
  return value.value;
}

// attribute<&Settings::member, kAllowedNumbers>(u"name")
template <auto kMember, const AllowedNumbers& kAllowed>
constexpr auto attribute(const char16_t* name) {
  auto line = attribute<kMember>(name);
  using Settings = decltype(ownerOf(kMember));
  line.read = [](const XMLNode& node, const char16_t* key, Settings& settings) {
    readAttribute(node, key, settings.*kMember);
    checkAllowed(node, key, wholeNumber(settings.*kMember), kAllowed);
  };
  return line;
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
