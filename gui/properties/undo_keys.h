// Lets the keys of undo and redo reach the window where the field that has the focus has nothing of
// its own to undo.
//
// Qt's fields take these keys in any case, so that they would do nothing there.
// Used by: the windows that edit a graph. Threads: the user-interface thread.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace kelvarin {

class UndoKeys : public QObject {
  Q_OBJECT

 public:
  // Belongs to the window.
  explicit UndoKeys(QWidget& window);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void follow(QWidget* focused);

  QWidget& m_window;
  QPointer<QWidget> m_field;
};

}  // namespace kelvarin
