// Colours an expression while it is typed.
//
// The whole expression is cut once a change, and only blocks whose colours differ are laid out
// anew. Qt's own highlighter keeps a format for each character, which takes most of the time that a
// key has in a long expression.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QObject>

#include "ui/language/highlighting.h"

class QTextBlock;
class QTextDocument;

namespace kelvarin {

class ExpressionHighlighter : public QObject {
  Q_OBJECT

 public:
  explicit ExpressionHighlighter(QTextDocument* document);

  void setNames(const KnownNames& names);

 private:
  using Spans = std::vector<HighlightedSpan>;

  // The blocks from `changedStart` to `changedEnd` are about to be laid out in any case.
  void highlight(int changedStart, int changedEnd);
  void colorBlock(QTextBlock& block, Spans::const_iterator first, Spans::const_iterator end);

  QTextDocument* m_document;
  KnownNames m_names;
};

}  // namespace kelvarin
