// Settings that are attributes of an XML element: a table has one line for each, and the same line
// describes, reads and writes it.
//
// A setting's default is what a default-constructed Settings holds. An absent attribute reads as
// the default, and an attribute is written only when the setting differs from it. Texts keep the
// graph parameters in them until they are used; in all other values they are replaced here.
#pragma once

#include <optional>
#include <ostream>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/export.h"
#include "host/contract/action_description.h"
#include "host/contract/global_parameters.h"
#include "host/contract/meta_info.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

// A whole number that files may hold with a fraction, which is cut off.
struct CutNumber {
  int value = 0;
  friend bool operator==(const CutNumber&, const CutNumber&) = default;
};

constexpr AttributeKind kindOfValue(const bool*) {
  return AttributeKind::flag;
}
constexpr AttributeKind kindOfValue(const int*) {
  return AttributeKind::wholeNumber;
}
constexpr AttributeKind kindOfValue(const double*) {
  return AttributeKind::number;
}
constexpr AttributeKind kindOfValue(const CutNumber*) {
  return AttributeKind::cutNumber;
}
constexpr AttributeKind kindOfValue(const MetaTypeColumn*) {
  return AttributeKind::typeCode;
}
constexpr AttributeKind kindOfValue(const QString*) {
  return AttributeKind::text;
}

// A text that is no value of the kind changes nothing.
KELVARIN_CORE void setValue(bool& value, const QString& text);
KELVARIN_CORE void setValue(int& value, const QString& text);
KELVARIN_CORE void setValue(double& value, const QString& text);
KELVARIN_CORE void setValue(CutNumber& value, const QString& text);
// The first character, where it is a letter or a digit.
KELVARIN_CORE void setValue(MetaTypeColumn& value, const QString& text);
KELVARIN_CORE void setValue(QString& value, const QString& text);

KELVARIN_CORE QString textOfValue(bool value);
KELVARIN_CORE QString textOfValue(int value);
KELVARIN_CORE QString textOfValue(double value);
KELVARIN_CORE QString textOfValue(CutNumber value);
KELVARIN_CORE QString textOfValue(MetaTypeColumn value);
inline QString textOfValue(const QString& value) {
  return value;
}

// Nothing when the attribute is absent. `parameters` are replaced in all kinds but texts; null:
// there are none.
KELVARIN_CORE std::optional<QString> attributeText(const XMLNode& node, const char16_t* name,
                                                   AttributeKind kind,
                                                   const GlobalParameters* parameters);

// Changes `value` when the attribute is there and can be read.
template <typename Value>
void readAttribute(const XMLNode& node, const char16_t* name, Value& value,
                   const GlobalParameters* parameters) {
  if (const auto text =
          attributeText(node, name, kindOfValue(static_cast<const Value*>(nullptr)), parameters)) {
    setValue(value, *text);
  }
}

// A blank, the name, "='", the value and "'".
KELVARIN_CORE void writeAttribute(std::wostream& out, const char16_t* name, const QString& value);

// A line of a table; made by attribute().
template <typename Settings>
struct Attribute {
  const char16_t* name;
  const char* meaning;
  AllowedValues allowed;
  AttributeKind kind;
  void (*set)(Settings& settings, const QString& text);
  QString (*text)(const Settings& settings);
};

template <typename Settings, typename Value>
Settings ownerOf(Value Settings::* member);

// The member at the end of a path of members.
template <auto kMember, auto... kRest>
constexpr auto& memberAt(auto& owner) {
  if constexpr (sizeof...(kRest) == 0) {
    return owner.*kMember;
  } else {
    return memberAt<kRest...>(owner.*kMember);
  }
}

// attribute<&Settings::member>(u"name", "what it means"), or with the path to a member of a member:
// attribute<&Settings::time, &Time::seed>(...)
template <auto kMember, auto... kRest>
constexpr auto attribute(const char16_t* name, const char* meaning, AllowedValues allowed = {}) {
  using Settings = decltype(ownerOf(kMember));
  using Member = decltype(memberAt<kMember, kRest...>(std::declval<Settings&>()));
  return Attribute<Settings>{
      .name = name,
      .meaning = meaning,
      .allowed = allowed,
      .kind = kindOfValue(static_cast<const std::remove_cvref_t<Member>*>(nullptr)),
      .set = [](Settings& settings,
                const QString& text) { setValue(memberAt<kMember, kRest...>(settings), text); },
      .text =
          [](const Settings& settings) {
            return textOfValue(memberAt<kMember, kRest...>(settings));
          }};
}

template <typename Settings>
using AttributeTable = std::span<const Attribute<Settings>>;

template <typename Settings>
void readAttributes(const XMLNode& node, AttributeTable<Settings> table, Settings& settings,
                    const GlobalParameters* parameters) {
  for (const Attribute<Settings>& line : table) {
    if (const auto text = attributeText(node, line.name, line.kind, parameters)) {
      line.set(settings, *text);
    }
  }
}

template <typename Settings>
void writeAttributes(std::wostream& out, AttributeTable<Settings> table, const Settings& settings) {
  const Settings defaults;
  for (const Attribute<Settings>& line : table) {
    if (const QString text = line.text(settings); text != line.text(defaults)) {
      writeAttribute(out, line.name, text);
    }
  }
}

// Appends the lines of a table to the description of an element.
template <typename Settings>
void describe(std::vector<AttributeDescription>& attributes, AttributeTable<Settings> table) {
  const Settings defaults;
  for (const Attribute<Settings>& line : table) {
    QString defaultText = line.text(defaults);
    attributes.push_back({QString::fromUtf16(line.name), line.kind, QString::fromUtf8(line.meaning),
                          defaultText.isNull() ? QStringLiteral("") : defaultText, line.allowed});
  }
}

template <typename Settings>
std::vector<AttributeDescription> described(AttributeTable<Settings> table) {
  std::vector<AttributeDescription> attributes;
  describe<Settings>(attributes, table);
  return attributes;
}

}  // namespace kelvarin
