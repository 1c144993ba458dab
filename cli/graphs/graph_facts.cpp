#include "cli/graphs/graph_facts.h"

#include <algorithm>

#include "cli/graphs/graph_declaration.h"

namespace kelvarin {

namespace {

QString attributeOf(const XMLNode& node, const char16_t* name) {
  return qString(node.getAttribute(utf16(name)));
}

template <typename Visit>
void forEachElement(const XMLNode& parent, const Visit& visit) {
  for (int i = 0; i < parent.nChildNode(); ++i) {
    visit(parent.getChildNode(i));
  }
}

XMLNode section(const XMLNode& root, const char16_t* name) {
  return root.getChildNode(utf16(name));
}

bool isDefault(const ElementDescription* declared, const NamedValue& attribute) {
  const AttributeDescription* known = attributeNamed(declared, attribute.name);
  return known != nullptr && !known->defaultText.isNull() && known->defaultText == attribute.value;
}

std::vector<NamedValue> attributesOf(const XMLNode& node, const ElementDescription* declared) {
  std::vector<NamedValue> attributes;
  for (int i = 0; i < node.nAttribute(); ++i) {
    NamedValue attribute{node.attributeName(i), node.attributeValue(i)};
    if (!isDefault(declared, attribute)) {
      attributes.push_back(std::move(attribute));
    }
  }
  if (declared != nullptr) {
    std::ranges::stable_sort(attributes, {}, [declared](const NamedValue& each) {
      const AttributeDescription* known = attributeNamed(declared, each.name);
      return known == nullptr ? declared->attributes.size()
                              : static_cast<std::size_t>(known - declared->attributes.data());
    });
  }
  return attributes;
}

// The texts of all elements inside, by which elements without a name are known.
QString wholeText(const XMLNode& node) {
  QString text = node.text();
  forEachElement(node, [&text](const XMLNode& child) { text += u'|' + wholeText(child); });
  return text;
}

// How an element is known among those of its name: by its name, its column, or what it says.
QString identityOf(const XMLNode& node) {
  for (const char16_t* name : {u"name", u"column", u"label", u"n"}) {
    if (const QString value = attributeOf(node, name); !value.isEmpty()) {
      return value;
    }
  }
  return node.nChildNode() > 0 ? wholeText(node).simplified() : node.text();
}

class ActionReader {
 public:
  explicit ActionReader(ActionFacts& action) : m_action(action) {}

  void read(const XMLNode& node, const ElementDescription* declared) {
    for (const NamedValue& attribute : attributesOf(node, declared)) {
      if (attribute.name == u"disabled") {
        m_action.isDisabled = attribute.value.trimmed() == u"1";
      }
      if (!isOfEveryAction(attribute.name)) {
        m_action.facts.push_back({0, {}, {attribute}, {}, attribute.name});
      }
    }
    readElements(node, declared, QString(), 1);
  }

 private:
  static bool isOfEveryAction(const QString& name) {
    return name == u"name" || name == u"version" || name == u"x" || name == u"y";
  }

  void readElements(const XMLNode& parent, const ElementDescription* declared, const QString& path,
                    int depth) {
    QHash<QString, int> seen;
    forEachElement(parent, [&](const XMLNode& child) {
      const ElementDescription* description = childNamed(declared, child.name());
      const bool mayRepeat = description == nullptr || description->mayRepeat;
      QString own = child.name();
      if (mayRepeat) {
        own += u' ' + identityOf(child);
        if (const int count = ++seen[own]; count > 1) {
          own += QStringLiteral(" (%1)").arg(count);
        }
      }
      const QString childPath = path.isEmpty() ? own : path + u'/' + own;
      const bool isBlank = child.text().trimmed().isEmpty();
      const bool holdsText = description == nullptr || !description->textMeaning.isEmpty();
      const bool hasText =
          child.nChildNode() == 0 && !child.text().isEmpty() && (holdsText || !isBlank);
      m_action.facts.push_back({depth, child.name(), attributesOf(child, description),
                                hasText ? child.text() : QString(), childPath});
      readElements(child, description, childPath, depth + 1);
    });
  }

  ActionFacts& m_action;
};

QString pinOf(const XMLNode& link, const char16_t* name) {
  const QString pin = attributeOf(link, name);
  return pin.isEmpty() ? QStringLiteral("0") : pin.trimmed();
}

}  // namespace

int GraphFacts::indexOf(const QString& action) const {
  return indexes.value(action, -1);
}

GraphFacts factsOf(const XMLNode& root, const ElementDescription& graph) {
  GraphFacts facts;
  forEachElement(section(root, u"Parameters"), [&facts](const XMLNode& node) {
    facts.parameters.push_back({attributeOf(node, u"name"), attributeOf(node, u"value")});
  });
  const ElementDescription* actions = childNamed(&graph, QStringLiteral("Actions"));
  forEachElement(section(root, u"Actions"), [&](const XMLNode& node) {
    ActionFacts action{attributeOf(node, u"name"), node.name(), false, {}};
    ActionReader(action).read(node, childNamed(actions, node.name()));
    if (!facts.indexes.contains(action.name)) {
      facts.indexes.insert(action.name, static_cast<int>(facts.actions.size()));
    }
    facts.actions.push_back(std::move(action));
  });
  forEachElement(section(root, u"Links"), [&facts](const XMLNode& node) {
    facts.links.push_back({attributeOf(node, u"from"), pinOf(node, u"fromPin"),
                           attributeOf(node, u"to"), pinOf(node, u"toPin")});
  });
  forEachElement(section(root, u"Notes"),
                 [&facts](const XMLNode& node) { facts.notes += node.text(); });
  return facts;
}

QString textOfLink(const LinkFacts& link) {
  const auto end = [](const QString& action, const QString& pin) {
    return pin == u"0" ? QStringLiteral("'%1'").arg(action)
                       : QStringLiteral("'%1' pin %2").arg(action, pin);
  };
  return end(link.from, link.fromPin) + QStringLiteral(" -> ") + end(link.to, link.toPin);
}

}  // namespace kelvarin
