// Colours an expression while it is typed.
//
// The whole expression is cut once a change, and only blocks whose colours differ are drawn anew.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QSyntaxHighlighter>

#include "ui/language/highlighting.h"

namespace kelvarin {

class ExpressionHighlighter : public QSyntaxHighlighter {
  Q_OBJECT

 public:
  explicit ExpressionHighlighter(QTextDocument* document);

  void setNames(const KnownNames& names);

 protected:
  void highlightBlock(const QString& text) override;

 private:
  void cutWhereChanged();
  void highlightOtherBlocks();
  int stateOf(const QTextBlock& block) const;
  std::vector<HighlightedSpan>::const_iterator firstSpanAfter(qsizetype position) const;

  KnownNames m_names;
  std::vector<HighlightedSpan> m_spans;
  bool m_isCut = false;  // into the spans of the document as it is
};

}  // namespace kelvarin
