#include "ui/widgets/expression_highlighter.h"

#include <algorithm>

#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include "ui/widgets/expression_colors.h"

namespace kelvarin {

namespace {

using Class = HighlightedSpan::Class;

QTextCharFormat colored(const QColor& color) {
  QTextCharFormat format;
  format.setForeground(color);
  return format;
}

QTextCharFormat underlined(QTextCharFormat format) {
  format.setUnderlineStyle(QTextCharFormat::DotLine);
  format.setUnderlineColor(expression_colors::kFault);
  return format;
}

// Null for what looks like plain text: every change of format costs time to lay out.
const QTextCharFormat* formatOf(Class kind) {
  namespace colors = expression_colors;
  static const QTextCharFormat number = colored(colors::kNumber);
  static const QTextCharFormat literal = colored(colors::kLiteral);
  static const QTextCharFormat function = colored(colors::kFunction);
  static const QTextCharFormat variable = colored(colors::kVariable);
  static const QTextCharFormat constant = colored(colors::kConstant);
  static const QTextCharFormat fault = underlined(colored(colors::kFault));
  switch (kind) {
    case Class::number:
    case Class::unit:
      return &number;
    case Class::text:
      return &literal;
    case Class::function:
      return &function;
    case Class::variable:
      return &variable;
    case Class::constant:
      return &constant;
    case Class::operatorSign:
    case Class::bracket:
    case Class::separator:
      return nullptr;
    case Class::unknownName:
    case Class::fault:
      break;
  }
  return &fault;
}

qsizetype endOf(const HighlightedSpan& span) {
  return span.start + span.size;
}

}  // namespace

ExpressionHighlighter::ExpressionHighlighter(QTextDocument* document)
    : QObject(document), m_document(document) {
  // Comes before the document is laid out, so that it is laid out once.
  connect(document, &QTextDocument::contentsChange, this,
          [this](int position, int, int added) { highlight(position, position + added); });
}

void ExpressionHighlighter::setNames(const KnownNames& names) {
  if (names.variables == m_names.variables && names.columns == m_names.columns &&
      names.parameters == m_names.parameters) {
    return;
  }
  m_names = names;
  highlight(-1, -1);
}

void ExpressionHighlighter::highlight(int changedStart, int changedEnd) {
  const Spans spans = highlightingOf(m_document->toPlainText(), m_names);
  auto first = spans.begin();
  for (QTextBlock block = m_document->begin(); block.isValid(); block = block.next()) {
    const int start = block.position();
    const int end = start + block.length() - 1;
    first = std::find_if(first, spans.end(),
                         [start](const HighlightedSpan& span) { return endOf(span) > start; });
    const auto last = std::find_if(
        first, spans.end(), [end](const HighlightedSpan& span) { return span.start >= end; });
    size_t hash = 0;
    for (auto span = first; span != last; ++span) {
      hash = qHashMulti(hash, span->start - start, span->size, static_cast<int>(span->kind));
    }
    const int state = static_cast<int>(hash & 0x7FFFFFFF);
    const bool isChanged = changedStart <= end && start <= changedEnd;
    // What is typed in one line can change the colours of another: a quote, a closing bracket.
    if (!isChanged && block.userState() == state) {
      continue;
    }
    block.setUserState(state);
    colorBlock(block, first, last);
    if (!isChanged) {
      m_document->markContentsDirty(start, block.length());
    }
  }
}

void ExpressionHighlighter::colorBlock(QTextBlock& block, Spans::const_iterator first,
                                       Spans::const_iterator end) {
  const qsizetype start = block.position();
  const qsizetype size = block.length() - 1;
  QList<QTextLayout::FormatRange> ranges;
  ranges.reserve(end - first);
  for (auto span = first; span != end; ++span) {
    const QTextCharFormat* format = formatOf(span->kind);
    if (format == nullptr) {
      continue;
    }
    const qsizetype from = std::max<qsizetype>(span->start - start, 0);
    const qsizetype to = std::min(endOf(*span) - start, size);
    ranges.push_back({static_cast<int>(from), static_cast<int>(to - from), *format});
  }
  block.layout()->setFormats(ranges);
}

}  // namespace kelvarin
