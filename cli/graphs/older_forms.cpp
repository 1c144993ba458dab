#include "cli/graphs/older_forms.h"

#include <algorithm>

#include "cli/graphs/messages.h"
#include "host/contract/attribute_table.h"
#include "host/xml_source/xml_text.h"

namespace kelvarin {

namespace {

namespace texts = graph_messages;

constexpr QStringView kExpression = u"Expression";
constexpr QStringView kInputVar = u"InputVar";

bool isBlank(const QString& text) {
  return QStringView(text).trimmed().isEmpty();
}

QString nameOf(const XmlTag& tag) {
  return tag.value(u"name").value_or(QString());
}

int childOf(const XmlText& text, QStringView name) {
  const auto found = std::ranges::find(
      text.children, name, [](const XmlChild& child) { return XmlTag(child.element).name(); });
  return found == text.children.end() ? -1 : static_cast<int>(found - text.children.begin());
}

std::vector<XmlEntry> entriesOf(const XmlText& text) {
  std::vector<XmlEntry> entries;
  entries.reserve(text.children.size());
  for (std::size_t i = 0; i < text.children.size(); ++i) {
    entries.push_back({static_cast<int>(i), text.children[i].element});
  }
  return entries;
}

class Upgrade {
 public:
  explicit Upgrade(const ActionCatalogue& catalogue) : m_catalogue(catalogue) {}

  QString graph(const QString& source) {
    XmlText text(source);
    if (!text.tag.value(u"version")) {
      text.tag.set(QStringLiteral("version"), QStringLiteral("1.0"));
      m_changes += texts::graphVersionAdded();
    }
    for (XmlChild& child : text.children) {
      if (XmlTag(child.element).name() == u"Actions") {
        child.element = actions(child.element);
      }
    }
    return text.text();
  }

  QStringList takeChanges() { return std::move(m_changes); }

 private:
  QString actions(const QString& source) {
    XmlText text(source);
    for (XmlChild& child : text.children) {
      child.element = action(child.element, lineStartOf(child.lead));
    }
    return text.text();
  }

  QString action(const QString& source, const QString& lineStart) {
    XmlText text(source);
    const CatalogueEntry* entry = m_catalogue.find(text.tag.name());
    if (entry == nullptr) {
      return source;
    }
    m_action = nameOf(text.tag);
    if (text.tag.name() == u"FilterRows") {
      moveExpression(text, lineStart);
      wrapVariables(text, lineStart);
    }
    for (XmlChild& child : text.children) {
      if (XmlTag(child.element).name() == u"OutputVars") {
        child.element = outputs(child.element);
      }
    }
    raiseVersion(text.tag, *entry);
    return text.text();
  }

  void moveExpression(XmlText& text, const QString& lineStart) {
    const auto attribute = text.tag.value(kExpression);
    if (!attribute) {
      return;
    }
    text.tag.remove(kExpression);
    m_changes += texts::expressionMoved(m_action);
    if (attribute->isEmpty()) {  // then the element counts
      return;
    }
    std::vector<XmlEntry> entries = entriesOf(text);
    const int present = childOf(text, kExpression);
    XmlText element(present < 0 ? QStringLiteral("<Expression></Expression>")
                                : text.children[static_cast<std::size_t>(present)].element);
    element.setPlainText(*attribute);
    if (present < 0) {
      entries.insert(entries.begin(), {-1, element.text()});
    } else {
      entries[static_cast<std::size_t>(present)].element = element.text();
    }
    text.setChildren(entries, lineStart);
  }

  // The list stands where its first variable stood.
  void wrapVariables(XmlText& text, const QString& lineStart) {
    if (childOf(text, u"InputVars") >= 0 || childOf(text, kInputVar) < 0) {
      return;
    }
    std::vector<XmlEntry> kept;
    std::vector<XmlEntry> variables;
    std::size_t position = 0;
    for (const XmlEntry& entry : entriesOf(text)) {
      if (XmlTag(entry.element).name() != kInputVar) {
        kept.push_back(entry);
        continue;
      }
      position = variables.empty() ? kept.size() : position;
      variables.push_back({-1, entry.element});
    }
    XmlText list(QStringLiteral("<InputVars></InputVars>"));
    list.setChildren(variables, lineStart.isEmpty() ? QString() : lineStart + blanks());
    kept.insert(kept.begin() + static_cast<std::ptrdiff_t>(position), {-1, list.text()});
    text.setChildren(kept, lineStart);
    m_changes += texts::variablesWrapped(m_action);
  }

  static QString blanks() { return QStringLiteral("  "); }

  QString outputs(const QString& source) {
    XmlText text(source);
    for (XmlChild& child : text.children) {
      if (XmlTag(child.element).name() == u"OutputVar") {
        child.element = output(child.element);
      }
    }
    return text.text();
  }

  QString output(const QString& source) {
    XmlText text(source);
    const QString name = nameOf(text.tag);
    if (const auto expression = text.tag.value(u"expression")) {
      text.tag.remove(u"expression");
      if (isBlank(text.plainText()) && text.children.empty()) {
        text.setPlainText(*expression);
      }
      m_changes += texts::outputExpressionMoved(name, m_action);
    }
    const auto isNumber = text.tag.value(u"isNumber");
    if (isNumber && !isNumber->contains(QStringLiteral("${"))) {
      text.tag.remove(u"isNumber");
      setType(text.tag, *isNumber);
      m_changes += texts::typeInLetters(name, m_action);
    }
    return text.text();
  }

  // Beside it, meta counts for nothing.
  static void setType(XmlTag& tag, const QString& isNumber) {
    if (xmltoi(isNumber.utf16(), 1) == 0) {
      tag.set(QStringLiteral("meta"), QStringLiteral("U"));
    } else {
      tag.remove(u"meta");
    }
  }

  void raiseVersion(XmlTag& tag, const CatalogueEntry& entry) {
    bool isNumber = false;
    const auto version = tag.value(u"version");
    const double given = version ? version->toDouble(&isNumber) : 0.0;
    if (isNumber && given < entry.version) {
      const QString today = textOfValue(entry.version);
      tag.set(QStringLiteral("version"), today);
      m_changes += texts::versionRaised(m_action, *version, today);
    }
  }

  const ActionCatalogue& m_catalogue;
  QString m_action;
  QStringList m_changes;
};

}  // namespace

UpgradedGraph upgraded(const QString& document, const ActionCatalogue& catalogue) {
  const qsizetype start = startOfRootElement(document);
  const qsizetype end = endOfElement(document, start);
  Upgrade upgrade(catalogue);
  const QStringView text = document;
  const QString root = upgrade.graph(text.sliced(start, end - start).toString());
  return {document.first(start) + root + document.sliced(end), upgrade.takeChanges()};
}

}  // namespace kelvarin
