#include "gui/document/xml_patch.h"

#include <algorithm>
#include <map>

#include "host/xml_source/xml_text.h"

namespace kelvarin {

namespace {

constexpr int kNone = -1;

QString nameOf(const XmlChild& child) {
  return XmlTag(child.element).name();
}

// By which a child is known among others of its name.
QString identityOf(const XmlChild& child) {
  const XmlTag tag(child.element);
  for (const QStringView attribute : {u"name", u"column", u"label"}) {
    if (const auto value = tag.value(attribute)) {
      return tag.name() + u' ' + *value;
    }
  }
  return {};
}

// Pairs items of two lists with equal keys, in their orders; those that are paired already and
// empty keys are passed over.
template <typename KeyOf>
void pairEqual(const std::vector<XmlChild>& from, const std::vector<XmlChild>& to, KeyOf keyOf,
               std::vector<int>& partners, std::vector<int>& backPartners) {
  std::map<QString, std::vector<int>> waiting;  // of `from`, the first one last
  for (int i = static_cast<int>(from.size()) - 1; i >= 0; --i) {
    if (partners[static_cast<std::size_t>(i)] == kNone) {
      waiting[keyOf(from[static_cast<std::size_t>(i)])].push_back(i);
    }
  }
  for (std::size_t j = 0; j < to.size(); ++j) {
    const QString key = backPartners[j] == kNone ? keyOf(to[j]) : QString();
    const auto found = key.isEmpty() ? waiting.end() : waiting.find(key);
    if (found == waiting.end() || found->second.empty()) {
      continue;
    }
    partners[static_cast<std::size_t>(found->second.back())] = static_cast<int>(j);
    backPartners[j] = found->second.back();
    found->second.pop_back();
  }
}

// Of each child of `now`, the one of `before` that it was.
std::vector<int> previousOf(const XmlText& before, const XmlText& now) {
  std::vector<int> partners(before.children.size(), kNone);
  std::vector<int> previous(now.children.size(), kNone);
  const auto pair = [&](auto keyOf) {
    pairEqual(before.children, now.children, keyOf, partners, previous);
  };
  pair([](const XmlChild& child) { return child.element; });
  pair(identityOf);
  pair(nameOf);
  return previous;
}

// Of each child of `before`, the one of the source that it was made of: children of a name follow
// each other in the same order. None where the source left the child to the program. Nothing where
// there are fewer or more of them.
std::optional<std::vector<int>> sourcesOf(const XmlText& source, const XmlText& before) {
  std::map<QString, std::vector<int>> byName;
  for (std::size_t i = 0; i < source.children.size(); ++i) {
    byName[nameOf(source.children[i])].push_back(static_cast<int>(i));
  }
  std::map<QString, std::size_t> counts;
  std::vector<int> sources;
  for (const XmlChild& child : before.children) {
    const QString name = nameOf(child);
    const std::vector<int>& candidates = byName[name];
    const std::size_t count = counts[name]++;
    sources.push_back(count < candidates.size() ? candidates[count] : kNone);
  }
  const bool isClear = std::ranges::all_of(counts, [&byName](const auto& count) {
    const std::size_t inSource = byName[count.first].size();
    return inSource == 0 || inSource == count.second;
  });
  return isClear ? std::optional(sources) : std::nullopt;
}

void patchAttributes(XmlTag& source, const XmlTag& before, const XmlTag& now) {
  for (const QString& name : now.attributeNames()) {
    if (const auto value = now.value(name); value != before.value(name)) {
      source.set(name, *value);
    }
  }
  for (const QString& name : before.attributeNames()) {
    if (!now.value(name)) {
      source.remove(name);
    }
  }
}

bool patch(XmlText& source, const XmlText& before, const XmlText& now, const QString& lineStart);

// Those that the program does not know stay behind the child that they stood behind.
void addUnknownChildren(std::vector<XmlEntry>& entries, const XmlText& source,
                        const std::vector<int>& sources) {
  std::vector<bool> isKnown(source.children.size(), false);
  for (const int index : sources) {
    if (index != kNone) {
      isKnown[static_cast<std::size_t>(index)] = true;
    }
  }
  for (std::size_t i = 0; i < source.children.size(); ++i) {
    if (isKnown[i]) {
      continue;
    }
    const auto before = std::find_if(entries.rbegin(), entries.rend(), [i](const XmlEntry& entry) {
      return entry.child >= 0 && static_cast<std::size_t>(entry.child) < i;
    });
    entries.insert(before.base(), {static_cast<int>(i), source.children[i].element});
  }
}

bool patchChildren(XmlText& source, const XmlText& before, const XmlText& now,
                   const QString& lineStart) {
  const auto sources = sourcesOf(source, before);
  if (!sources) {
    return false;
  }
  const std::vector<int> previous = previousOf(before, now);
  std::vector<XmlEntry> entries;
  for (std::size_t i = 0; i < now.children.size(); ++i) {
    const QString& element = now.children[i].element;
    if (previous[i] == kNone) {
      entries.push_back({kNone, element});
      continue;
    }
    const QString& old = before.children[static_cast<std::size_t>(previous[i])].element;
    const int index = (*sources)[static_cast<std::size_t>(previous[i])];
    if (index == kNone) {
      if (element != old) {
        entries.push_back({kNone, element});
      }
      continue;
    }
    const XmlChild& child = source.children[static_cast<std::size_t>(index)];
    entries.push_back({index, child.element});
    if (element == old) {
      continue;
    }
    XmlText changed(child.element);
    if (!patch(changed, XmlText(old), XmlText(element), lineStartOf(child.lead))) {
      return false;
    }
    entries.back().element = changed.text();
  }
  addUnknownChildren(entries, source, *sources);
  source.setChildren(entries, lineStart);
  return true;
}

bool patch(XmlText& source, const XmlText& before, const XmlText& now, const QString& lineStart) {
  patchAttributes(source.tag, before.tag, now.tag);
  if (!before.children.empty() || !now.children.empty()) {
    return patchChildren(source, before, now, lineStart);
  }
  const QString text = now.plainText();
  if (text == before.plainText()) {
    return true;
  }
  if (!source.children.empty()) {
    return false;
  }
  source.setPlainText(text);
  return true;
}

}  // namespace

std::optional<QString> patchedElement(const QString& source, const QString& before,
                                      const QString& now, const QString& lineStart) {
  XmlText text(source);
  if (!patch(text, XmlText(before), XmlText(now), lineStart)) {
    return std::nullopt;
  }
  return text.text();
}

}  // namespace kelvarin
