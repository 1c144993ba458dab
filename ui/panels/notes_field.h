// A field for notes: one line at first, more as they are written.
//
// Used by the expression editors.
// Threads: the user-interface thread.
#pragma once

#include <QPlainTextEdit>

namespace kelvarin {

class NotesField : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit NotesField(QWidget* parent = nullptr);

  // A text that is there already stays as it is, with cursor and undo.
  void setNotes(const QString& notes);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

 signals:
  void editingFinished();

 protected:
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fitHeight();
};

}  // namespace kelvarin
