// The editor of an expression: it remembers its cursor while it has no focus, and reports the end
// of editing.
#pragma once

#include "ui/widgets/zoom_plain_text_edit.h"

namespace kelvarin {

class KPlainTextEdit : public ZoomPlainTextEdit {
  Q_OBJECT

 public:
  explicit KPlainTextEdit(QWidget* parent = nullptr);

 signals:
  // Before the base class handles the loss of the focus.
  void editingFinished();

 protected:
  void focusOutEvent(QFocusEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  int m_savedPosition = 0;
  // The other end of the selection while a menu is open, which is about the selection; else -1.
  int m_menuAnchor = -1;
};

}  // namespace kelvarin
