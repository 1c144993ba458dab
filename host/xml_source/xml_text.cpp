#include "host/xml_source/xml_text.h"

#include <algorithm>
#include <utility>

#include "host/xml/xml_node.h"

namespace kelvarin {

namespace {

constexpr QStringView kCommentStart = u"<!--";
constexpr QStringView kCommentEnd = u"-->";
constexpr QStringView kDataStart = u"<![CDATA[";
constexpr QStringView kDataEnd = u"]]>";
constexpr QStringView kInstructionStart = u"<?";
constexpr QStringView kInstructionEnd = u"?>";

bool isBlank(QStringView text) {
  return text.trimmed().isEmpty();
}

qsizetype behind(QStringView text, QStringView mark, qsizetype from) {
  const qsizetype found = text.indexOf(mark, from);
  return found < 0 ? text.size() : found + mark.size();
}

// Behind a comment, CDATA or a processing instruction that begins at `start`; -1 for a tag.
qsizetype endOfOtherMarkup(QStringView text, qsizetype start) {
  const QStringView markup = text.sliced(start);
  if (markup.startsWith(kCommentStart)) {
    return behind(text, kCommentEnd, start + kCommentStart.size());
  }
  if (markup.startsWith(kDataStart)) {
    return behind(text, kDataEnd, start + kDataStart.size());
  }
  return markup.startsWith(kInstructionStart) ? behind(text, kInstructionEnd, start) : -1;
}

// Behind the ">" of the tag that begins at `start`, which may stand in its quoted values too.
qsizetype endOfTag(QStringView text, qsizetype start) {
  QChar quote;
  for (qsizetype i = start; i < text.size(); ++i) {
    const QChar c = text[i];
    if (!quote.isNull()) {
      quote = c == quote ? QChar() : quote;
    } else if (c == u'"' || c == u'\'') {
      quote = c;
    } else if (c == u'>') {
      return i + 1;
    }
  }
  return text.size();
}

// The next opening or closing tag; the end of the text without one.
qsizetype nextTag(QStringView text, qsizetype from) {
  qsizetype at = text.indexOf(u'<', from);
  while (at >= 0) {
    const qsizetype end = endOfOtherMarkup(text, at);
    if (end < 0) {
      return at;
    }
    at = text.indexOf(u'<', end);
  }
  return text.size();
}

bool isClosingTag(QStringView text, qsizetype at) {
  return text.sliced(at).startsWith(u"</");
}

// A text between elements: its first part belongs to the element in front of it. Comments are not
// cut.
qsizetype endOfLine(QStringView between) {
  for (qsizetype i = 0; i < between.size(); ++i) {
    if (between[i] == u'\n') {
      return i > 0 && between[i - 1] == u'\r' ? i - 1 : i;
    }
    if (const qsizetype end = between[i] == u'<' ? endOfOtherMarkup(between, i) : -1; end > 0) {
      i = end - 1;
    }
  }
  return between.size();
}

QString escapedText(const QString& plain) {
  return QString::fromStdWString(elementText(plain)).replace(u'\r', QStringLiteral("&#13;"));
}

// What stands with a child and is more than blanks.
QString withoutElement(const XmlChild& child) {
  if (!isBlank(child.rest)) {
    return child.lead + child.rest;
  }
  const QString above = child.lead.chopped(lineStartOf(child.lead).size());
  return isBlank(above) ? QString() : above;
}

// The end of CDATA inside it is divided between two of them.
QString asData(QString plain) {
  plain.replace(kDataEnd.toString(), QStringLiteral("]]]]><![CDATA[>"));
  return kDataStart.toString() + plain + kDataEnd.toString();
}

}  // namespace

qsizetype startOfRootElement(QStringView document) {
  return nextTag(document, 0);
}

qsizetype endOfElement(QStringView text, qsizetype start) {
  int depth = 0;
  qsizetype at = start;
  while (at < text.size()) {
    const qsizetype end = endOfTag(text, at);
    if (isClosingTag(text, at)) {
      --depth;
    } else if (text[end - 2] != u'/') {
      ++depth;
    }
    if (depth == 0) {
      return end;
    }
    at = nextTag(text, end);
  }
  return text.size();
}

QString lineStartOf(const QString& lead) {
  qsizetype start = lead.lastIndexOf(u'\n');
  if (start < 0 || !isBlank(QStringView(lead).sliced(start))) {
    return {};
  }
  if (start > 0 && lead[start - 1] == u'\r') {
    --start;
  }
  return lead.sliced(start);
}

XmlText::XmlText(QStringView element) : tag(element) {
  if (tag.isSelfClosing()) {
    return;
  }
  QString* rest = &head;
  qsizetype at = tag.length();
  for (;;) {
    const qsizetype next = nextTag(element, at);
    const QStringView between = element.sliced(at, next - at);
    const bool isEnd = next >= element.size() || isClosingTag(element, next);
    if (isEnd && children.empty()) {
      head = between.toString();
      closing = element.sliced(next).toString();
      return;
    }
    const qsizetype cut = endOfLine(between);
    *rest = between.first(cut).toString();
    if (isEnd) {
      foot = between.sliced(cut).toString();
      closing = element.sliced(next).toString();
      return;
    }
    at = endOfElement(element, next);
    children.push_back(
        {between.sliced(cut).toString(), element.sliced(next, at - next).toString(), {}});
    rest = &children.back().rest;  // set before another child moves them
  }
}

QString XmlText::text() const {
  QString text = tag.text() + head;
  for (const XmlChild& child : children) {
    text += child.lead + child.element + child.rest;
  }
  return text + foot + closing;
}

QString XmlText::plainText() const {
  QString plain;
  qsizetype at = 0;
  const QStringView text = head;
  while (at < text.size()) {
    const qsizetype markup = text.indexOf(u'<', at);
    plain += withoutXmlEscapes(text.sliced(at, (markup < 0 ? text.size() : markup) - at));
    if (markup < 0) {
      break;
    }
    at = endOfOtherMarkup(text, markup);
    if (text.sliced(markup).startsWith(kDataStart)) {
      const qsizetype start = markup + kDataStart.size();
      plain += text.sliced(start, at - kDataEnd.size() - start);
    }
    if (at < 0) {
      break;
    }
  }
  return plain.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

void XmlText::setPlainText(const QString& plain) {
  const QStringView before = QStringView(head).trimmed();
  head = before.startsWith(kDataStart) && before.endsWith(kDataEnd) ? asData(plain)
                                                                    : escapedText(plain);
  if (closing.isEmpty() && !head.isEmpty()) {
    tag.open();
    closing = QStringLiteral("</%1>").arg(tag.name());
  }
}

void XmlText::setChildren(const std::vector<XmlEntry>& entries, const QString& lineStart) {
  QString childStart;
  if (!children.empty()) {
    childStart = lineStartOf(children.back().lead);
  } else if (!lineStart.isEmpty()) {
    // One level deeper, with the blanks that this element is indented by where it is at the first.
    const QString blanks = lineStart.sliced(lineStart.indexOf(u'\n') + 1);
    childStart = lineStart + (blanks.size() == 1 ? blanks : QStringLiteral("  "));
  }
  if (closing.isEmpty() && !entries.empty()) {
    tag.open();
    closing = QStringLiteral("</%1>").arg(tag.name());
  }
  if (children.empty() && !entries.empty()) {
    foot = head.contains(u'\n') ? head.sliced(endOfLine(head)) : lineStart;
    head = head.contains(u'\n') ? head.first(endOfLine(head)) : head;
  }

  std::vector<XmlChild> arranged;
  std::vector<std::ptrdiff_t> newIndexes(children.size(), -1);
  for (const XmlEntry& entry : entries) {
    if (entry.child < 0) {
      arranged.push_back({childStart, indented(entry.element, childStart), {}});
      continue;
    }
    const auto index = static_cast<std::size_t>(entry.child);
    newIndexes[index] = std::ssize(arranged);
    arranged.push_back(children[index]);
    arranged.back().element = entry.element;
  }
  QString left;  // comments of children that have gone
  for (std::size_t i = 0; i < children.size(); ++i) {
    if (newIndexes[i] < 0) {
      left += withoutElement(children[i]);
    } else {
      QString& lead = arranged[static_cast<std::size_t>(newIndexes[i])].lead;
      lead = std::exchange(left, {}) + lead;
    }
  }
  children = std::move(arranged);
  foot = left + foot;
  if (children.empty()) {
    head += std::exchange(foot, {});
  }
}

QString indented(const QString& element, const QString& lineStart, const QString& oldLineStart) {
  XmlText text(element);
  const QString deeper = lineStart + QStringLiteral("  ");
  for (XmlChild& child : text.children) {
    const bool hasLine = child.lead.contains(u'\n') && !lineStart.isEmpty();
    child.element = indented(child.element, hasLine ? deeper : QString(), lineStartOf(child.lead));
    if (isBlank(child.lead)) {
      child.lead = hasLine ? deeper : QString();
    }
  }
  // Without children, blanks may be a value.
  QString& end = text.children.empty() ? text.head : text.foot;
  if (isBlank(end) && (!text.children.empty() || end == oldLineStart)) {
    end = end.contains(u'\n') ? lineStart : end;
  }
  return text.text();
}

}  // namespace kelvarin
