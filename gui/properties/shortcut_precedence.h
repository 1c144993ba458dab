// Lets the keys of an editor go before those of its window: while the focus is in the editor, the
// window's actions with the same keys have none.
//
// Qt reports a key with two owners as ambiguous and calls neither.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QPointer>

class QAction;
class QWidget;

namespace kelvarin {

class ShortcutPrecedence : public QObject {
  Q_OBJECT

 public:
  // Belongs to the window, of which `inner` is a part.
  ShortcutPrecedence(QWidget& inner, QWidget& window);

 private:
  void followFocus(const QWidget* focused);
  void yieldTo(const QWidget& owner);
  void takeBack();

  QWidget& m_inner;
  QWidget& m_window;
  std::vector<std::pair<QPointer<QAction>, QList<QKeySequence>>> m_yielded;
};

}  // namespace kelvarin
