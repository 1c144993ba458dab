#include "gui/document/graph_source.h"

#include <algorithm>
#include <utility>

#include <QStringDecoder>
#include <QStringEncoder>

namespace kelvarin {

namespace {

const std::array<QString, GraphSource::sectionCount> kSections{
    QStringLiteral("Parameters"), QStringLiteral("Actions"), QStringLiteral("Links"),
    QStringLiteral("Notes")};
// The null text: elements of every name.
const std::array<QString, GraphSource::sectionCount> kElements{
    QStringLiteral("Parameter"), QString(), QStringLiteral("Link"), QStringLiteral("Note")};

QString decoded(const QByteArray& document, QStringConverter::Encoding encoding) {
  return QStringDecoder(encoding, QStringConverter::Flag::ConvertInitialBom)(document);
}

}  // namespace

GraphSource::GraphSource(const QByteArray& document)
    : m_bytes(document),
      m_encoding(QStringConverter::encodingForData(document).value_or(QStringConverter::Utf8)),
      m_text(decoded(document, m_encoding)),
      m_rootStart(startOfRootElement(m_text)),
      m_rootEnd(endOfElement(m_text, m_rootStart)),
      m_root(QStringView(m_text).sliced(m_rootStart, m_rootEnd - m_rootStart)) {
  m_children.fill(-1);
  for (std::size_t i = 0; i < m_root.children.size(); ++i) {
    const QString name = XmlTag(m_root.children[i].element).name();
    const auto section = std::ranges::find(kSections, name) - kSections.begin();
    if (section < sectionCount && m_children[static_cast<std::size_t>(section)] < 0) {
      takeSection(static_cast<Section>(section), static_cast<int>(i));
    }
  }
}

void GraphSource::takeSection(Section section, int child) {
  m_children[section] = child;
  XmlText& text =
      m_sections[section].emplace(m_root.children[static_cast<std::size_t>(child)].element);
  for (std::size_t i = 0; i < text.children.size(); ++i) {
    if (kElements[section].isNull() ||
        XmlTag(text.children[i].element).name() == kElements[section]) {
      m_elements[section].push_back(static_cast<int>(i));
    }
  }
}

const QString& GraphSource::element(Section section, int child) const {
  return m_sections[section]->children[static_cast<std::size_t>(child)].element;
}

QString GraphSource::lineStart(Section section, int child) const {
  return lineStartOf(m_sections[section]->children[static_cast<std::size_t>(child)].lead);
}

// What stands in a section and is none of its elements stays behind what it stood behind.
void GraphSource::keepOthers(Section section, std::vector<XmlEntry>& entries) const {
  const auto& children = m_sections[section]->children;
  if (m_elements[section].size() == children.size()) {
    return;
  }
  for (std::size_t i = 0; i < children.size(); ++i) {
    if (std::ranges::binary_search(m_elements[section], static_cast<int>(i))) {
      continue;
    }
    const auto before = std::find_if(entries.rbegin(), entries.rend(), [i](const XmlEntry& entry) {
      return entry.child >= 0 && static_cast<std::size_t>(entry.child) < i;
    });
    entries.insert(before.base(), {static_cast<int>(i), children[i].element});
  }
}

QString GraphSource::sectionText(Section section, std::vector<XmlEntry> entries,
                                 const QString& lineStart) const {
  keepOthers(section, entries);
  XmlText text = *m_sections[section];
  text.setChildren(entries, lineStart);
  return text.text();
}

// The first section goes to the beginning, the others behind the one that comes before them.
void GraphSource::addSection(Section section, const std::vector<XmlEntry>& entries,
                             std::vector<XmlEntry>& ofRoot) const {
  QString text = QStringLiteral("<%1>").arg(kSections[section]);
  const bool hasLines = m_text.contains(u'\n');
  for (const XmlEntry& entry : entries) {
    text += (hasLines ? QStringLiteral("\n  ") : QString()) + entry.element;
  }
  text += (hasLines ? QStringLiteral("\n") : QString()) +
          QStringLiteral("</%1>").arg(kSections[section]);
  auto position = ofRoot.begin();
  for (auto entry = ofRoot.begin(); entry != ofRoot.end(); ++entry) {
    const auto rank = std::ranges::find(kSections, XmlTag(entry->element).name());
    if (rank - kSections.begin() < section) {
      position = entry + 1;
    }
  }
  ofRoot.insert(position, {-1, text});
}

QByteArray GraphSource::document(const Content& content) const {
  std::vector<XmlEntry> ofRoot;
  ofRoot.reserve(m_root.children.size());
  for (std::size_t i = 0; i < m_root.children.size(); ++i) {
    ofRoot.push_back({static_cast<int>(i), m_root.children[i].element});
  }
  for (const Section section : {parameters, actions, links, notes}) {
    if (const int child = m_children[section]; child >= 0) {
      const auto index = static_cast<std::size_t>(child);
      ofRoot[index].element =
          sectionText(section, content[section], lineStartOf(m_root.children[index].lead));
    }
  }
  for (const Section section : {parameters, actions, links, notes}) {
    if (m_children[section] < 0 && !content[section].empty()) {
      addSection(section, content[section], ofRoot);
    }
  }
  XmlText root = m_root;
  root.setChildren(ofRoot, QStringLiteral("\n"));
  const QString text = m_text.first(m_rootStart) + root.text() + m_text.sliced(m_rootEnd);
  return text == m_text ? m_bytes : encoded(text);
}

// With the byte order mark that the text began with.
QByteArray GraphSource::encoded(const QString& text) const {
  return QStringEncoder(m_encoding)(text);
}

}  // namespace kelvarin
