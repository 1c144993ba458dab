// The editor inside an ExpressionField: colours, bracket pairs, the squiggle under a fault, and the
// keys that ask for help with what is being typed.
//
// Threads: the user-interface thread.
#pragma once

#include "ui/language/highlighting.h"
#include "ui/widgets/k_plain_text_edit.h"
#include "ui/widgets/typing_pairs.h"

namespace kelvarin {

class ExpressionHighlighter;

class ExpressionEditor : public KPlainTextEdit {
  Q_OBJECT

 public:
  static constexpr qsizetype kLongestPaste = 100'000;  // in characters

  explicit ExpressionEditor(QWidget* parent = nullptr);

  // Without line breaks, pasted ones included; Enter finishes editing.
  void useOneLine();

  QString expression() const { return toPlainText(); }
  // A few lines: pages that scroll take it for what the field needs.
  QSize sizeHint() const override;
  void setNames(const KnownNames& names);
  // The squiggle; -1 removes it. It moves along with the text.
  void setFault(qsizetype start, qsizetype size);
  // One step for undo. With the cursor at `position`, counted in the new text.
  void replace(qsizetype start, qsizetype size, const QString& replacement, qsizetype position);
  // The rectangle of a character on the screen.
  QRect characterOnScreen(qsizetype position) const;

 signals:
  // Text was typed, not pasted nor undone.
  void typed(const QString& text);
  void erased();
  // It is too long, and was not inserted.
  void pasteRefused(qsizetype size);
  // Of one line.
  void returnPressed();
  // At the cursor, which is where they were dropped.
  void variablesDropped(const QStringList& names);
  void completionAsked();
  void callTipAsked();
  void fixAsked();
  void helpAsked();
  // One step back in time, or forth.
  void historyAsked(bool isOlder);
  // The pointer rests on a character.
  void pointed(int position, const QPoint& onScreen);

 protected:
  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void changeEvent(QEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  bool askByKey(const QKeyEvent& event);
  // For the list of keys.
  void describeKeys();
  bool typeBracket(const QString& text);
  void showMarks();
  void useFixedFont();
  void fitHeight();

  ExpressionHighlighter* m_highlighter;
  bool m_isOneLine = false;
  QTextCursor m_fault;  // the characters above the squiggle
};

}  // namespace kelvarin
