// An XML element as it is written in a file, one level deep: its tag, its child elements, and all
// that stands between them (blanks, comments, texts), which stays as it is when children change.
//
// A child is the text of its element, to be taken apart where it is changed itself.
// Used by: the document of the windows, and the commands that write graph files anew.
// Errors: the text was parsed before; what is not well formed is kept as it is.
#pragma once

#include <vector>

#include "host/xml_source/xml_tag.h"

namespace kelvarin {

// A child with what belongs to it: the lines above it with its indentation, and the rest of its
// line.
struct XmlChild {
  QString lead;
  QString element;
  QString rest;
};

// What a child is to be: one that is there, by its index, with this text; or a new one.
struct XmlEntry {
  int child = -1;
  QString element;
};

struct XmlText {
  XmlTag tag;
  QString head;  // the rest of the tag's line; all content where there are no children
  std::vector<XmlChild> children;
  QString foot;     // what stands before the closing tag
  QString closing;  // empty for "<a/>"

  explicit XmlText(QStringView element);

  QString text() const;
  // The text of an element without children, without escapes.
  QString plainText() const;
  // In the form of the text that was there: CDATA, or with escapes.
  void setPlainText(const QString& plain);

  // Children of the same order keep their lines; others come and go with a line of their own where
  // the element has its children on lines of their own. `lineStart` is the line break and the
  // indentation in front of this element, empty where it has no line of its own.
  void setChildren(const std::vector<XmlEntry>& entries, const QString& lineStart);
};

// Behind the declaration, comments and instructions of a document.
qsizetype startOfRootElement(QStringView document);
// The end of the element that begins at `start`.
qsizetype endOfElement(QStringView text, qsizetype start);
// The line break at the end of `lead` with the blanks behind it; empty where there is none.
QString lineStartOf(const QString& lead);
// The element with its lines moved to an indentation; children stay on lines of their own.
QString indented(const QString& element, const QString& lineStart,
                 const QString& oldLineStart = QStringLiteral("\n"));

}  // namespace kelvarin
