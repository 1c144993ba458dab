#include "ui/widgets/expression_highlighter.h"

#include <algorithm>

#include <QTextDocument>

#include "ui/widgets/expression_colors.h"

namespace kelvarin {

namespace {

QTextCharFormat colored(const QColor& color) {
  QTextCharFormat format;
  format.setForeground(color);
  return format;
}

QTextCharFormat formatOf(HighlightedSpan::Class kind) {
  namespace colors = expression_colors;
  using Class = HighlightedSpan::Class;
  switch (kind) {
    case Class::number:
    case Class::unit:
      return colored(colors::kNumber);
    case Class::text:
      return colored(colors::kLiteral);
    case Class::function:
      return colored(colors::kFunction);
    case Class::variable:
      return colored(colors::kVariable);
    case Class::constant:
      return colored(colors::kConstant);
    case Class::operatorSign:
    case Class::bracket:
    case Class::separator:
      return colored(colors::kOperator);
    case Class::unknownName:
    case Class::fault:
      break;
  }
  QTextCharFormat format = colored(colors::kFault);
  format.setUnderlineStyle(QTextCharFormat::DotLine);
  format.setUnderlineColor(colors::kFault);
  return format;
}

}  // namespace

ExpressionHighlighter::ExpressionHighlighter(QTextDocument* document)
    : QSyntaxHighlighter(static_cast<QObject*>(document)) {
  // Before the base class hears of the change and asks for colours.
  connect(document, &QTextDocument::contentsChange, this, [this] { m_isCut = false; });
  setDocument(document);
  connect(document, &QTextDocument::contentsChanged, this,
          &ExpressionHighlighter::highlightOtherBlocks);
}

void ExpressionHighlighter::setNames(const KnownNames& names) {
  if (names.variables == m_names.variables && names.columns == m_names.columns &&
      names.parameters == m_names.parameters) {
    return;
  }
  m_names = names;
  m_isCut = false;
  highlightOtherBlocks();
}

void ExpressionHighlighter::highlightBlock(const QString& text) {
  cutWhereChanged();
  const qsizetype start = currentBlock().position();
  const qsizetype end = start + text.size();
  for (auto span = firstSpanAfter(start); span != m_spans.end() && span->start < end; ++span) {
    const qsizetype from = std::max(span->start, start);
    const qsizetype to = std::min(span->start + span->size, end);
    setFormat(static_cast<int>(from - start), static_cast<int>(to - from), formatOf(span->kind));
  }
  setCurrentBlockState(stateOf(currentBlock()));
}

void ExpressionHighlighter::cutWhereChanged() {
  if (m_isCut) {
    return;
  }
  m_isCut = true;
  m_spans = highlightingOf(document()->toPlainText(), m_names);
}

// What is typed in one line can change what stands in another: a quote, the partner of a bracket.
void ExpressionHighlighter::highlightOtherBlocks() {
  cutWhereChanged();
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    if (block.userState() != stateOf(block)) {
      rehighlightBlock(block);
    }
  }
}

// Differs where the colours of the block do.
int ExpressionHighlighter::stateOf(const QTextBlock& block) const {
  const qsizetype start = block.position();
  const qsizetype end = start + block.length() - 1;
  size_t hash = 0;
  for (auto span = firstSpanAfter(start); span != m_spans.end() && span->start < end; ++span) {
    hash = qHashMulti(hash, span->start - start, span->size, static_cast<int>(span->kind));
  }
  return static_cast<int>(hash & 0x7FFFFFFF);
}

std::vector<HighlightedSpan>::const_iterator ExpressionHighlighter::firstSpanAfter(
    qsizetype position) const {
  return std::partition_point(
      m_spans.begin(), m_spans.end(),
      [position](const HighlightedSpan& span) { return span.start + span.size <= position; });
}

}  // namespace kelvarin
