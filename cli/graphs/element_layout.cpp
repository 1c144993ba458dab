#include "cli/graphs/element_layout.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "cli/graphs/graph_declaration.h"
#include "host/xml_source/xml_text.h"

namespace kelvarin {

namespace {

constexpr qsizetype kLineLength = 100;
constexpr QStringView kCommentStart = u"<!--";
constexpr QStringView kInstructionStart = u"<?";

bool isBlank(QStringView text) {
  return text.trimmed().isEmpty();
}

QString blanks(qsizetype count) {
  return QString(count, u' ');
}

// In single quotes; a value has no line break but as a reference.
QString quoted(const QString& value) {
  return u'\'' +
         withXmlEscapes(value)
             .replace(QStringLiteral("&quot;"), QStringLiteral("\""))
             .replace(QStringLiteral("&gt;"), QStringLiteral(">")) +
         u'\'';
}

// A comment or an instruction that stands beside elements.
struct Remark {
  QString text;
  bool isOnLineBefore = false;  // it ends the line of what stands in front of it
  bool hasBlankLineBefore = false;
};

// All that stands between two tags.
struct Gap {
  std::vector<Remark> remarks;
  bool hasBlankLineAtEnd = false;
  bool hasText = false;  // something that is no remark
};

Gap gapOf(QStringView text) {
  Gap gap;
  qsizetype lineBreaks = 0;
  for (qsizetype i = 0; i < text.size();) {
    const QStringView rest = text.sliced(i);
    const bool isComment = rest.startsWith(kCommentStart);
    if (isComment || rest.startsWith(kInstructionStart)) {
      const QStringView mark = isComment ? QStringView(u"-->") : QStringView(u"?>");
      const qsizetype found = text.indexOf(mark, i + (isComment ? kCommentStart.size() : 2));
      const qsizetype end = found < 0 ? text.size() : found + mark.size();
      gap.remarks.push_back({text.sliced(i, end - i).toString(), lineBreaks == 0, lineBreaks > 1});
      lineBreaks = 0;
      i = end;
      continue;
    }
    lineBreaks += text[i] == u'\n' ? 1 : 0;
    gap.hasText = gap.hasText || !text[i].isSpace();
    ++i;
  }
  gap.hasBlankLineAtEnd = lineBreaks > 1;
  return gap;
}

// A child with the remarks above it and those on its line.
struct Part {
  std::vector<Remark> above;
  bool hasBlankLineBefore = false;  // right in front of the element
  QString element;
  std::vector<Remark> behind;
};

struct Parts {
  std::vector<Remark> onFirstLine;  // behind the opening tag
  std::vector<Part> parts;
  std::vector<Remark> atEnd;
  bool hasText = false;
};

// The remarks of the gap that end a line go to `behind`.
std::vector<Remark> withoutLineEnds(Gap& gap, std::vector<Remark>& behind) {
  const auto first =
      std::ranges::find_if(gap.remarks, [](const Remark& each) { return !each.isOnLineBefore; });
  behind.insert(behind.end(), gap.remarks.begin(), first);
  return {first, gap.remarks.end()};
}

Parts partsOf(const XmlText& text) {
  Parts parts;
  QString before = text.head;
  std::vector<Remark>* behind = &parts.onFirstLine;
  parts.parts.reserve(text.children.size());
  for (const XmlChild& child : text.children) {
    Gap gap = gapOf(QString(before + child.lead));
    parts.hasText = parts.hasText || gap.hasText;
    std::vector<Remark> above = withoutLineEnds(gap, *behind);
    parts.parts.push_back({std::move(above), gap.hasBlankLineAtEnd, child.element, {}});
    behind = &parts.parts.back().behind;
    before = child.rest;
  }
  Gap gap = gapOf(QString(before + text.foot));
  parts.hasText = parts.hasText || gap.hasText;
  parts.atEnd = withoutLineEnds(gap, *behind);
  return parts;
}

void addRemarks(const std::vector<Remark>& remarks, const QString& lineStart, bool isFirst,
                QString& out) {
  for (const Remark& remark : remarks) {
    if (remark.isOnLineBefore && !out.isEmpty()) {
      out += u' ' + remark.text;
      continue;
    }
    if (remark.hasBlankLineBefore && !isFirst) {
      out += u'\n';
    }
    out += lineStart + remark.text;
    isFirst = false;
  }
}

class Layout {
 public:
  QString element(const QString& source, const ElementDescription* declared, qsizetype indent) {
    XmlText text(source);
    if (text.closing.isEmpty()) {
      return openingTag(text.tag, declared, indent, true);
    }
    if (!text.children.empty()) {
      return withChildren(text, declared, indent);
    }
    const Gap gap = gapOf(text.head);
    const bool holdsText = declared == nullptr || !declared->textMeaning.isEmpty();
    if (text.head.isEmpty() || (isBlank(text.head) && !holdsText)) {
      return openingTag(text.tag, declared, indent, true);
    }
    if (!gap.hasText && !gap.remarks.empty() && !holdsText) {
      return withChildren(text, declared, indent);
    }
    return openingTag(text.tag, declared, indent, false) + text.head + closingTag(text.tag);
  }

 private:
  static QString closingTag(const XmlTag& tag) { return QStringLiteral("</%1>").arg(tag.name()); }

  // Declared attributes in their order, then the others as they come.
  static QStringList orderedAttributes(const XmlTag& tag, const ElementDescription* declared) {
    QStringList names = tag.attributeNames();
    const auto index = [declared](const QString& name) {
      const AttributeDescription* attribute = attributeNamed(declared, name);
      return attribute == nullptr ? std::numeric_limits<std::ptrdiff_t>::max()
                                  : attribute - declared->attributes.data();
    };
    std::ranges::stable_sort(names, {}, index);
    return names;
  }

  // Attributes that do not fit on the line go on below the first one.
  static QString openingTag(const XmlTag& tag, const ElementDescription* declared, qsizetype indent,
                            bool isWhole) {
    const QString end = isWhole ? QStringLiteral("/>") : QStringLiteral(">");
    QStringList attributes;
    qsizetype length = indent + 1 + tag.name().size() + end.size();
    for (const QString& name : orderedAttributes(tag, declared)) {
      attributes += name + u'=' + quoted(tag.value(name).value_or(QString()));
      length += 1 + attributes.back().size();
    }
    const QString start = u'<' + tag.name();
    if (length <= kLineLength || attributes.size() < 2) {
      return attributes.isEmpty() ? start + end : start + u' ' + attributes.join(u' ') + end;
    }
    const QString lineStart = u'\n' + blanks(indent + start.size() + 1);
    QString text = start + u' ';
    qsizetype used = indent + text.size();
    for (qsizetype i = 0; i < attributes.size(); ++i) {
      const qsizetype needed = attributes[i].size() + (i + 1 == attributes.size() ? end.size() : 0);
      if (i > 0 && used + 1 + needed > kLineLength) {
        text += lineStart;
        used = lineStart.size() - 1;
      } else if (i > 0) {
        text += u' ';
        ++used;
      }
      text += attributes[i];
      used += attributes[i].size();
    }
    return text + end;
  }

  // Lists of values, which read best on one line.
  static bool isShortList(const QString& name) {
    return name == u"Row" || name == u"SL" || name == u"ColumnStrategy";
  }

  QString withChildren(const XmlText& text, const ElementDescription* declared, qsizetype indent) {
    Parts parts = partsOf(text);
    if (parts.hasText) {
      return openingTag(text.tag, declared, indent, false) + text.text().sliced(text.tag.length());
    }
    if (const QString line = onOneLine(text, parts, declared, indent); !line.isEmpty()) {
      return line;
    }
    if (declared != nullptr && declared->name == u"KelvarinGraph") {
      sortSections(parts.parts, declared);
    }
    QString out = openingTag(text.tag, declared, indent, false);
    const qsizetype deeper = indent + 2;
    const QString lineStart = u'\n' + blanks(deeper);
    addRemarks(parts.onFirstLine, lineStart, true, out);
    bool isFirst = true;
    for (const Part& part : parts.parts) {
      addRemarks(part.above, lineStart, isFirst, out);
      isFirst = isFirst && part.above.empty();
      if (part.hasBlankLineBefore && !isFirst) {
        out += u'\n';
      }
      const XmlTag tag(part.element);
      out += lineStart + element(part.element, childNamed(declared, tag.name()), deeper);
      addRemarks(part.behind, lineStart, false, out);
      isFirst = false;
    }
    addRemarks(parts.atEnd, lineStart, isFirst, out);
    return out + u'\n' + blanks(indent) + closingTag(text.tag);
  }

  // Empty where it does not fit.
  QString onOneLine(const XmlText& text, const Parts& parts, const ElementDescription* declared,
                    qsizetype indent) {
    if (!isShortList(text.tag.name()) || !parts.onFirstLine.empty() || !parts.atEnd.empty()) {
      return {};
    }
    QString line = openingTag(text.tag, declared, indent, false);
    for (const Part& part : parts.parts) {
      if (!part.above.empty() || !part.behind.empty()) {
        return {};
      }
      const XmlTag tag(part.element);
      line += element(part.element, childNamed(declared, tag.name()), 0);
    }
    line += closingTag(text.tag);
    return line.contains(u'\n') || indent + line.size() > kLineLength ? QString() : line;
  }

  static void sortSections(std::vector<Part>& parts, const ElementDescription* graph) {
    std::ranges::stable_sort(parts, {}, [graph](const Part& part) {
      const ElementDescription* section = childNamed(graph, XmlTag(part.element).name());
      return section == nullptr ? std::numeric_limits<std::ptrdiff_t>::max()
                                : section - graph->children.data();
    });
  }
};

// What stands in front of the root or behind it, one remark a line.
QString remarksOf(QStringView text, bool isFirst) {
  QString lines;
  for (const Remark& remark : gapOf(text).remarks) {
    const bool isDeclaration = remark.text.startsWith(QStringLiteral("<?xml "));
    lines += remark.hasBlankLineBefore && !(isFirst && lines.isEmpty()) ? QStringLiteral("\n")
                                                                        : QString();
    lines +=
        (isDeclaration ? QStringLiteral("<?xml version='1.0' encoding='UTF-8'?>") : remark.text) +
        u'\n';
  }
  return lines;
}

bool haveSameAttributes(const XMLNode& left, const XMLNode& right) {
  if (left.nAttribute() != right.nAttribute()) {
    return false;
  }
  for (int i = 0; i < left.nAttribute(); ++i) {
    const unsigned short* other = right.getAttribute(left.attributeName(i).utf16());
    if (other == nullptr || qString(other) != left.attributeValue(i)) {
      return false;
    }
  }
  return true;
}

std::vector<XMLNode> childrenOf(const XMLNode& node) {
  std::vector<XMLNode> children;
  children.reserve(static_cast<std::size_t>(node.nChildNode()));
  for (int i = 0; i < node.nChildNode(); ++i) {
    children.push_back(node.getChildNode(i));
  }
  return children;
}

bool areSame(const XMLNode& left, const XMLNode& right, const ElementDescription* declared,
             bool isRoot) {
  const bool holdsText = declared == nullptr || !declared->textMeaning.isEmpty();
  const bool areBothBlank = isBlank(left.text()) && isBlank(right.text());
  if (left.name() != right.name() || !haveSameAttributes(left, right) ||
      left.nChildNode() != right.nChildNode() ||
      (left.text() != right.text() && (holdsText || !areBothBlank))) {
    return false;
  }
  std::vector<XMLNode> ofLeft = childrenOf(left);
  std::vector<XMLNode> ofRight = childrenOf(right);
  if (isRoot) {  // whose sections have an order of their own
    std::ranges::stable_sort(ofLeft, {}, &XMLNode::name);
    std::ranges::stable_sort(ofRight, {}, &XMLNode::name);
  }
  return std::ranges::equal(ofLeft, ofRight, [declared](const XMLNode& one, const XMLNode& other) {
    return areSame(one, other, childNamed(declared, one.name()), false);
  });
}

}  // namespace

QString laidOut(const QString& document, const ElementDescription& graph) {
  const qsizetype start = startOfRootElement(document);
  const qsizetype end = endOfElement(document, start);
  const QStringView text = document;
  const Gap lastGap = gapOf(text.first(start));
  return remarksOf(text.first(start), true) +
         (lastGap.hasBlankLineAtEnd && !lastGap.remarks.empty() ? QStringLiteral("\n")
                                                                : QString()) +
         Layout().element(text.sliced(start, end - start).toString(), &graph, 0) + u'\n' +
         remarksOf(text.sliced(end), false);
}

bool isSameContent(const XMLNode& left, const XMLNode& right, const ElementDescription& graph) {
  return areSame(left, right, &graph, true);
}

}  // namespace kelvarin
