#include "gui/document/changed_part.h"

#include "host/xml_source/xml_text.h"

namespace kelvarin {

namespace {

void addChangedAttributes(const XmlTag& before, const XmlTag& now, QStringList& parts) {
  for (const QString& name : now.attributeNames()) {
    if (now.value(name) != before.value(name)) {
      parts += name;
    }
  }
  for (const QString& name : before.attributeNames()) {
    if (!now.value(name)) {
      parts += name;
    }
  }
}

// An element is known by its name attribute, else by its own name.
QString shownName(const XmlTag& tag) {
  for (const QStringView attribute : {u"name", u"label", u"column"}) {
    if (const auto value = tag.value(attribute)) {
      return u'\'' + *value + u'\'';
    }
  }
  return tag.name();
}

// Lists of elements, which the user sees as the elements in them.
bool isList(const XmlTag& tag) {
  return tag.attributeNames().isEmpty() && tag.name().endsWith(u's');
}

void addChangedChildren(const XmlText& before, const XmlText& now, QStringList& parts) {
  if (before.children.size() != now.children.size()) {
    parts += now.tag.name();
    return;
  }
  for (std::size_t i = 0; i < now.children.size(); ++i) {
    if (before.children[i].element == now.children[i].element) {
      continue;
    }
    const XmlText child(now.children[i].element);
    if (isList(child.tag)) {
      addChangedChildren(XmlText(before.children[i].element), child, parts);
    } else {
      parts += shownName(child.tag);
    }
  }
}

}  // namespace

QString changedPart(const QString& before, const QString& now) {
  const XmlText old(before);
  const XmlText changed(now);
  QStringList parts;
  addChangedAttributes(old.tag, changed.tag, parts);
  addChangedChildren(old, changed, parts);
  return parts.size() == 1 ? parts.front() : QString();
}

}  // namespace kelvarin
