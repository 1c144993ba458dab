// A field to search a list or a tree with: reports what is typed after a short rest.
//
// Arrow down and Enter go on in the list, Esc empties the field.
#pragma once

#include <QLineEdit>
#include <QTimer>

#include "base/export.h"

namespace kelvarin {

class KELVARIN_CORE SearchField : public QLineEdit {
  Q_OBJECT

 public:
  explicit SearchField(QWidget* parent = nullptr);
  // The list that gets the focus by arrow down and Enter; may be null.
  void setList(QWidget* list) { m_list = list; }

 signals:
  // Not for each key, and at once when the field was emptied or Enter was pressed.
  void searched(const QString& text);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void report();

  QTimer m_rest;
  QString m_reported;
  QWidget* m_list = nullptr;
  QAction* m_icon;
};

}  // namespace kelvarin
