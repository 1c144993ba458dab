// What is found out about the text of an XML file before it is parsed: where its tags open, and a
// form of it that the reader accepts.
//
// The reader that xml_parser.cpp uses reports only where a tag ends, and refuses "]]>" in element
// text, which users write in expressions; so one pass over the text notes the positions of the
// opening tags and escapes that sequence.
// Errors: text that is no XML is scanned as well as it can be; the reader reports what is wrong.
#pragma once

#include <vector>

#include <QString>

#include "host/xml/xml_node.h"

namespace kelvarin {

struct ScannedXml {
  QString document;                     // as read from the file
  QString text;                         // as the reader is to see it
  std::vector<XMLNode::Position> tags;  // the "<" of every opening tag, in order
  XMLNode::Position documentType;       // of a DOCTYPE, line 0 without one
  std::vector<qsizetype> escapes;  // offsets in `text` of the escapes that were put in, ascending

  // Where a character of `text` stands in the document.
  XMLNode::Position positionOf(qsizetype offset) const;
};

ScannedXml scanXml(const QString& document);

// The position of a character, counted from 1; a surrogate pair counts as one character, CR LF as
// one line break.
XMLNode::Position positionInText(QStringView text, qsizetype offset);

}  // namespace kelvarin
