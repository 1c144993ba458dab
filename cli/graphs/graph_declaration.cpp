#include "cli/graphs/graph_declaration.h"

#include <algorithm>

#include "host/contract/described_action.h"

namespace kelvarin {

namespace {

using Attributes = std::vector<AttributeDescription>;

AttributeDescription attributeOf(const char16_t* name, AttributeKind kind, const char* meaning,
                                 const QString& defaultText = QString()) {
  return {QString::fromUtf16(name), kind, QString::fromLatin1(meaning), defaultText};
}

ElementDescription section(const char16_t* name, const char* meaning,
                           std::vector<ElementDescription> children) {
  return {.name = QString::fromUtf16(name),
          .meaning = QString::fromLatin1(meaning),
          .children = std::move(children)};
}

ElementDescription parameterElement() {
  return {.name = QStringLiteral("Parameter"),
          .meaning = QStringLiteral("a value that a run may set to another one"),
          .mayRepeat = true,
          .attributes = {attributeOf(u"name", AttributeKind::text, "the parameter's name"),
                         attributeOf(u"value", AttributeKind::text, "its value")}};
}

ElementDescription linkElement() {
  const QString firstPin = QStringLiteral("0");
  constexpr auto kPin = AttributeKind::wholeNumber;
  return {
      .name = QStringLiteral("Link"),
      .meaning = QStringLiteral("the rows of an output pin go to an input pin"),
      .mayRepeat = true,
      .attributes = {attributeOf(u"from", AttributeKind::text, "the action that makes the rows"),
                     attributeOf(u"fromPin", kPin, "its output pin, counted from 0", firstPin),
                     attributeOf(u"to", AttributeKind::text, "the action that takes them"),
                     attributeOf(u"toPin", kPin, "its input pin, counted from 0", firstPin)}};
}

ElementDescription noteElement() {
  constexpr auto kNumber = AttributeKind::number;
  return {.name = QStringLiteral("Note"),
          .meaning = QStringLiteral("a text box on the canvas, without effect on a run"),
          .textMeaning = QStringLiteral("what it says"),
          .mayRepeat = true,
          .attributes = {attributeOf(u"x", kNumber, "the position, from the left"),
                         attributeOf(u"y", kNumber, "the position, from the top"),
                         attributeOf(u"w", kNumber, "the width"),
                         attributeOf(u"h", kNumber, "the height"),
                         attributeOf(u"color", AttributeKind::text, "#RRGGBB")}};
}

ElementDescription actionElement(const CatalogueEntry& entry) {
  ElementDescription element{.name = entry.typeName,
                             .meaning = entry.toolTip,
                             .mayRepeat = true,
                             .attributes = attributesOfEveryAction()};
  if (const ActionDescription* description = descriptionOf(*entry.prototype)) {
    element.attributes.insert(element.attributes.end(), description->attributes.begin(),
                              description->attributes.end());
    element.children = description->children;
  }
  return element;
}

}  // namespace

ElementDescription declaredGraph(const ActionCatalogue& catalogue) {
  std::vector<ElementDescription> actions;
  for (const CatalogueEntry& entry : catalogue.entries()) {
    actions.push_back(actionElement(entry));
  }
  ElementDescription graph =
      section(u"KelvarinGraph", "actions, the links between them, and parameters",
              {section(u"Parameters", "values that a run may set", {parameterElement()}),
               section(u"Actions", "the actions, each named by its type", std::move(actions)),
               section(u"Links", "where rows go", {linkElement()}),
               section(u"Notes", "texts on the canvas", {noteElement()})});
  graph.attributes = {attributeOf(u"version", AttributeKind::text, "of the file's layout: 1.0",
                                  QStringLiteral("1.0"))};
  return graph;
}

const ElementDescription* childNamed(const ElementDescription* parent, const QString& name) {
  if (parent == nullptr) {
    return nullptr;
  }
  const auto found = std::ranges::find(parent->children, name, &ElementDescription::name);
  return found == parent->children.end() ? nullptr : &*found;
}

const AttributeDescription* attributeNamed(const ElementDescription* element, const QString& name) {
  if (element == nullptr) {
    return nullptr;
  }
  const auto found = std::ranges::find(element->attributes, name, &AttributeDescription::name);
  return found == element->attributes.end() ? nullptr : &*found;
}

}  // namespace kelvarin
