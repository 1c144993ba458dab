#include "cli/action_page.h"

#include <fmt/format.h>

#include "cli/action_examples.h"
#include "host/contract/declared_content.h"

namespace kelvarin {

namespace {

const char* wordOf(AttributeKind kind) {
  switch (kind) {
    case AttributeKind::text:
      return "text";
    case AttributeKind::flag:
      return "flag";
    case AttributeKind::wholeNumber:
      return "wholeNumber";
    case AttributeKind::cutNumber:
    case AttributeKind::number:
      return "number";
    case AttributeKind::typeCode:
      return "typeCode";
    case AttributeKind::sample:
      break;
  }
  return "sample";
}

Json jsonOf(const std::vector<AttributeDescription>& attributes) {
  Json list = Json::array();
  for (const AttributeDescription& attribute : attributes) {
    Json line = {{"name", attribute.name.toStdString()},
                 {"type", wordOf(attribute.kind)},
                 {"values", valuesInWords(attribute).toStdString()},
                 {"default", nullptr},
                 {"meaning", attribute.meaning.toStdString()}};
    if (!attribute.defaultText.isNull()) {
      line["default"] = attribute.defaultText.toStdString();
    }
    list.push_back(std::move(line));
  }
  return list;
}

Json jsonOf(const std::vector<ElementDescription>& elements) {
  Json list = Json::array();
  for (const ElementDescription& element : elements) {
    list.push_back({{"name", element.name.toStdString()},
                    {"meaning", element.meaning.toStdString()},
                    {"text", element.textMeaning.toStdString()},
                    {"repeats", element.mayRepeat},
                    {"attributes", jsonOf(element.attributes)},
                    {"children", jsonOf(element.children)}});
  }
  return list;
}

std::string joined(const QStringList& texts) {
  return texts.isEmpty() ? "-" : texts.join(QLatin1String(", ")).toStdString();
}

class Page {
 public:
  explicit Page(const CatalogueEntry& entry) {
    add("{}: {}\n", entry.typeName.toStdString(), entry.toolTip.toStdString());
    add("  {:<11}{} in, {} out\n", "Pins", entry.pinsIn, entry.pinsOut);
    add("  {:<11}{}\n", "Tags", joined(entry.tags));
    add("  {:<11}{}\n", "Keywords", joined(entry.keywords));
    add("  {:<11}{}\n", "File types", joined(entry.fileTypes));
  }

  void addAttributes(const std::string& heading,
                     const std::vector<AttributeDescription>& attributes) {
    if (attributes.empty()) {
      return;
    }
    add("\n{}\n", heading);
    std::size_t width = 0;
    for (const AttributeDescription& attribute : attributes) {
      width = std::max(width, static_cast<std::size_t>(attribute.name.size()));
    }
    for (const AttributeDescription& attribute : attributes) {
      const std::string values = valuesInWords(attribute).toStdString();
      const std::string otherwise =
          attribute.defaultText.isEmpty()
              ? std::string()
              : fmt::format("; default {}", attribute.defaultText.toStdString());
      add("  {:<{}}  {}\n", attribute.name.toStdString(), width, attribute.meaning.toStdString());
      add("  {:<{}}  ({}{})\n", "", width, values, otherwise);
    }
  }

  void addElements(const std::string& parent, const std::vector<ElementDescription>& elements) {
    for (const ElementDescription& element : elements) {
      const std::string name = element.name.toStdString();
      add("\n<{}> inside <{}>{}\n  {}\n", name, parent, element.mayRepeat ? ", any number" : "",
          element.meaning.toStdString());
      if (!element.textMeaning.isEmpty()) {
        add("  Its text is {}.\n", element.textMeaning.toStdString());
      }
      addAttributes(fmt::format("Attributes of <{}>", name), element.attributes);
      addElements(name, element.children);
    }
  }

  void addExample(const QString& typeName) {
    if (const char* example = exampleOf(typeName)) {
      add("\nExample\n{}", example);
    }
  }

  std::string take() { return std::move(m_text); }

 private:
  template <typename... Arguments>
  void add(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
    m_text += fmt::format(format, std::forward<Arguments>(arguments)...);
  }

  std::string m_text;
};

}  // namespace

std::string actionPage(const CatalogueEntry& entry) {
  Page page(entry);
  page.addAttributes("Attributes of every action", attributesOfEveryAction());
  if (const ActionDescription* description = descriptionOf(*entry.prototype)) {
    const std::string name = entry.typeName.toStdString();
    page.addAttributes(fmt::format("Attributes of <{}>", name), description->attributes);
    page.addElements(name, description->children);
  }
  page.addExample(entry.typeName);
  return page.take();
}

Json actionJson(const CatalogueEntry& entry) {
  Json json = {{"typeName", entry.typeName.toStdString()},
               {"toolTip", entry.toolTip.toStdString()},
               {"help", entry.helpId.toStdString()},
               {"tags", jsonOf(entry.tags)},
               {"keywords", jsonOf(entry.keywords)},
               {"fileTypes", jsonOf(entry.fileTypes)},
               {"pinsIn", entry.pinsIn},
               {"pinsOut", entry.pinsOut},
               {"version", entry.version},
               {"source", entry.source == ActionSource::plugin ? "plugin" : "host"}};
  if (const ActionDescription* description = descriptionOf(*entry.prototype)) {
    json["attributes"] = jsonOf(description->attributes);
    json["children"] = jsonOf(description->children);
  }
  if (const char* example = exampleOf(entry.typeName)) {
    json["example"] = example;
  }
  return json;
}

}  // namespace kelvarin
