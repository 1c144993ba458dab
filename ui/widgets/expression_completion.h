// Completion in an expression editor: when the list appears, what it holds, and what choosing a
// line of it does to the text.
//
// Used by ExpressionField, which passes the keys.
// Threads: the user-interface thread.
#pragma once

#include <QObject>

#include "ui/language/completion.h"

namespace kelvarin {

class CompletionPopup;
class ExpressionEditor;

class ExpressionCompletion : public QObject {
  Q_OBJECT

 public:
  // The popup's window belongs to `owner`.
  ExpressionCompletion(ExpressionEditor& editor, QWidget* owner);

  void setFormula(const Formula& formula);
  void setUses(const QHash<QString, int>& uses);

  // The user wants a list, or has typed or erased something.
  void ask();
  void follow(bool isTyped);
  bool takeKey(int key);
  void close();
  const CompletionPopup& popup() const { return *m_popup; }

 signals:
  void columnWanted(const QString& column);
  // A function with its brackets was put in.
  void callInserted();
  void moved();

 private:
  void offer(CompletionList list);
  void accept(int line);
  bool isCompleted(const CompletionList& list) const;

  ExpressionEditor& m_editor;
  CompletionPopup* m_popup;
  Completion m_completion;
  CompletionList m_list;
  QHash<QString, int> m_uses;
  qsizetype m_refusedStart = -1;  // of the word for which the user closed the list
};

}  // namespace kelvarin
