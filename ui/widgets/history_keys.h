// Earlier expressions in an editor: Alt+Up and Alt+Down go through them, a menu shows them with
// their stars.
//
// Used by ExpressionField.
// Threads: the user-interface thread.
#pragma once

#include <QObject>

#include "ui/language/expression_history.h"

class QMenu;
class QToolButton;

namespace kelvarin {

class ExpressionEditor;

class HistoryKeys : public QObject {
  Q_OBJECT

 public:
  // The button opens the menu.
  HistoryKeys(ExpressionEditor& editor, QToolButton& button);

  const ExpressionHistory& history() const { return m_history; }
  void setKey(const QString& key);
  void add(const QString& expression);

 private:
  void go(bool isOlder);
  void fill();
  void show(const QString& expression);

  ExpressionEditor& m_editor;
  QMenu* m_menu;
  ExpressionHistory m_history;
  int m_index = -1;  // of the entry that is shown; -1: the user's own text
  QString m_ownText;
  QString m_shown;
};

}  // namespace kelvarin
