// A handle on a parsed XML element, the converters of its texts, and the escaping of texts that are
// written.
//
// Copies share the element. Texts are UTF-16, zero-terminated, and live as long as a handle on
// their document's element does. Threads: an element is read-only after parsing.
#pragma once

#include <ostream>
#include <sstream>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "base/export.h"
#include "base/result.h"

namespace kelvarin {
struct XmlElement;
}

struct KELVARIN_CORE XMLNode {
 public:
  // Where an element stands in its file, counted from 1; 0 when it comes from none.
  struct Position {
    long long line = 0;
    long long column = 0;
  };

  static XMLNode emptyNode();
  XMLNode();
  XMLNode(const XMLNode& other);
  XMLNode& operator=(const XMLNode& other);
  ~XMLNode();

  bool isEmpty() const;
  QString name() const;
  Position position() const;

  // Null when absent. `index`, when given, is where the search starts, and receives the index after
  // the one found.
  const unsigned short* getAttribute(const unsigned short* name, int* index = nullptr) const;
  int nAttribute() const;
  QString attributeName(int index) const;
  QString attributeValue(int index) const;

  // The empty node when absent; `index` as above, for children of one name.
  XMLNode getChildNode(const unsigned short* name, int* index = nullptr) const;
  XMLNode getChildNode(int index) const;
  int nChildNode() const;

  // The index-th run of text between children; null when absent. Comments do not end a run. Beside
  // children, a run of blanks alone is indentation and does not count.
  const unsigned short* getText(int index) const;
  // All text of the element without its children's.
  QString text() const;

 private:
  friend struct kelvarin::XmlElement;
  explicit XMLNode(kelvarin::XmlElement* element);
  kelvarin::XmlElement* m_element;
};

static_assert(sizeof(XMLNode) == sizeof(void*));

namespace kelvarin {

struct XmlError {
  QString message;
  XMLNode::Position position;
};

// Parses a whole document. Refused: what is not well formed, a DOCTYPE, more than 200 levels.
KELVARIN_CORE Result<XMLNode, XmlError> parseXml(const QByteArray& document);

// The contract's texts are arrays of unsigned short; these two convert without copying the source.
inline const unsigned short* utf16(const char16_t* text) {
  return reinterpret_cast<const unsigned short*>(text);
}
KELVARIN_CORE QString qString(const unsigned short* text);

// Escapes a text for an element: "&" and "<" only. What XML cannot hold (control characters, half
// of a surrogate pair) becomes U+FFFD, here and in ToXMLStringTool, so that what is written can
// always be read.
KELVARIN_CORE std::wstring elementText(const QString& text);

}  // namespace kelvarin

// Converters of attribute texts; each returns `otherwise` when the text is null or no value of the
// wanted kind.
KELVARIN_CORE int xmltoi(const unsigned short* text, int otherwise);
KELVARIN_CORE char xmltob(const unsigned short* text, char otherwise);
KELVARIN_CORE double xmltof(const unsigned short* text, double otherwise);
KELVARIN_CORE unsigned short xmltoc(const unsigned short* text, unsigned short otherwise);
KELVARIN_CORE const unsigned short* xmltoa(const unsigned short* text,
                                           const unsigned short* otherwise);

// A string list is <SL><S>text</S>...</SL>; the node is the SL element or its parent.
KELVARIN_CORE QStringList fromXMLSL(XMLNode node);
KELVARIN_CORE void toXML(QStringList texts, std::wostringstream& out);

// Escapes texts for an attribute: & < > ' " as entities, TAB, LF and CR as character references.
class KELVARIN_CORE ToXMLStringTool {
 public:
  // The text stays valid until the next call or freeBuffer().
  const wchar_t* toXML(const QString& text);
  void freeBuffer();

 private:
  std::wstring m_buffer;
};
