// The document that a graph was read from, cut into its elements, so that those that have not
// changed are saved as they were, and everything between them too.
//
// Used by: edited_graph_parts.h, graph_text.cpp.
// Errors: the document was parsed before.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include <QByteArray>
#include <QStringConverter>

#include "host/xml_source/xml_text.h"

namespace kelvarin {

class GraphSource {
 public:
  enum Section { parameters, actions, links, notes, sectionCount };
  // What a section is to hold; its elements are known by their indexes among its children.
  using Content = std::array<std::vector<XmlEntry>, sectionCount>;

  explicit GraphSource(const QByteArray& document);

  // The children of a section with its elements' name, all children for actions; as indexes among
  // its children.
  const std::vector<int>& elements(Section section) const { return m_elements[section]; }
  const QString& element(Section section, int child) const;
  // The line break and the indentation in front of it.
  QString lineStart(Section section, int child) const;

  // The document with other content; byte for byte what was read where nothing is different.
  // What a section holds beside its elements stays.
  QByteArray document(const Content& content) const;

 private:
  void takeSection(Section section, int child);
  QString sectionText(Section section, std::vector<XmlEntry> entries,
                      const QString& lineStart) const;
  void keepOthers(Section section, std::vector<XmlEntry>& entries) const;
  void addSection(Section section, const std::vector<XmlEntry>& entries,
                  std::vector<XmlEntry>& ofRoot) const;
  QByteArray encoded(const QString& text) const;

  QByteArray m_bytes;
  QStringConverter::Encoding m_encoding = QStringConverter::Utf8;
  QString m_text;  // with a byte order mark where the bytes begin with one
  qsizetype m_rootStart = 0;
  qsizetype m_rootEnd = 0;
  XmlText m_root;
  std::array<int, sectionCount> m_children;  // of the root; -1 for a section that is absent
  std::array<std::optional<XmlText>, sectionCount> m_sections;
  std::array<std::vector<int>, sectionCount> m_elements;
};

}  // namespace kelvarin
