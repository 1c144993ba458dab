#include "host/xml/xml_scanner.h"

#include <algorithm>

namespace kelvarin {

namespace {

constexpr QStringView kTextEnd = u"]]>";
constexpr QStringView kEscapedTextEnd = u"]]&gt;";

// Walks over a text and keeps count of lines and columns.
class Cursor {
 public:
  explicit Cursor(QStringView text) : m_text(text) {}

  bool isAtEnd() const { return m_offset >= m_text.size(); }
  bool isAt(QStringView prefix) const { return m_text.mid(m_offset).startsWith(prefix); }
  QChar current() const { return m_text[m_offset]; }
  qsizetype offset() const { return m_offset; }
  XMLNode::Position position() const { return m_position; }

  void advance() {
    const QChar c = current();
    const bool isCarriageReturnAlone =
        c == u'\r' && (m_offset + 1 == m_text.size() || m_text[m_offset + 1] != u'\n');
    if (c == u'\n' || isCarriageReturnAlone) {
      ++m_position.line;
      m_position.column = 1;
    } else if (!c.isLowSurrogate()) {
      ++m_position.column;
    }
    ++m_offset;
  }

  void advanceTo(qsizetype offset) {
    while (m_offset < offset && !isAtEnd()) {
      advance();
    }
  }

  // Behind the next `mark`, or to the end without one.
  void advanceBehind(QStringView mark) {
    const qsizetype found = m_text.indexOf(mark, m_offset);
    advanceTo(found < 0 ? m_text.size() : found + mark.size());
  }

 private:
  QStringView m_text;
  qsizetype m_offset = 0;
  XMLNode::Position m_position{1, 1};
};

// Behind the ">" of a tag, which may stand in its quoted values too.
void advanceBehindTag(Cursor& cursor) {
  QChar quote;
  while (!cursor.isAtEnd()) {
    const QChar c = cursor.current();
    cursor.advance();
    if (!quote.isNull()) {
      quote = c == quote ? QChar() : quote;
    } else if (c == u'"' || c == u'\'') {
      quote = c;
    } else if (c == u'>') {
      return;
    }
  }
}

// At a "<": notes what begins there and goes behind it.
void scanMarkup(Cursor& cursor, ScannedXml& scanned) {
  const XMLNode::Position position = cursor.position();
  if (cursor.isAt(u"<!--")) {
    cursor.advanceTo(cursor.offset() + 4);
    cursor.advanceBehind(u"-->");
  } else if (cursor.isAt(u"<![CDATA[")) {
    cursor.advanceBehind(kTextEnd);
  } else if (cursor.isAt(u"<?")) {
    cursor.advanceBehind(u"?>");
  } else if (cursor.isAt(u"</")) {
    cursor.advanceBehind(u">");
  } else if (cursor.isAt(u"<!")) {
    if (scanned.documentType.line == 0) {
      scanned.documentType = position;
    }
    cursor.advanceBehind(u">");
  } else {
    scanned.tags.push_back(position);
    advanceBehindTag(cursor);
  }
}

}  // namespace

ScannedXml scanXml(const QString& document) {
  ScannedXml scanned;
  scanned.document = document;
  scanned.text.reserve(document.size());
  Cursor cursor(document);
  while (!cursor.isAtEnd()) {
    const qsizetype start = cursor.offset();
    if (cursor.current() == u'<') {
      scanMarkup(cursor, scanned);
    } else if (cursor.current() == u']' && cursor.isAt(kTextEnd)) {
      cursor.advanceTo(start + kTextEnd.size());
      scanned.escapes.push_back(scanned.text.size());
      scanned.text += kEscapedTextEnd;
      continue;
    } else {
      cursor.advance();
    }
    scanned.text += QStringView(document).mid(start, cursor.offset() - start);
  }
  return scanned;
}

XMLNode::Position ScannedXml::positionOf(qsizetype offset) const {
  constexpr qsizetype growth = kEscapedTextEnd.size() - kTextEnd.size();
  const auto escapesBefore =
      std::lower_bound(escapes.begin(), escapes.end(), offset) - escapes.begin();
  return positionInText(document, std::max<qsizetype>(0, offset - growth * escapesBefore));
}

XMLNode::Position positionInText(QStringView text, qsizetype offset) {
  Cursor cursor(text);
  cursor.advanceTo(offset);
  return cursor.position();
}

}  // namespace kelvarin
