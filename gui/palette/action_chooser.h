// A search field over the list of actions: type the first letters and press Enter, or choose one in
// the list by Enter or double click.
//
// Used by: palette_panel.h, quick_add.h. Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "gui/palette/palette_model.h"

class QLineEdit;
class QTreeView;

namespace kelvarin {

class ActionChooser : public QWidget {
  Q_OBJECT

 public:
  ActionChooser(const ActionCatalogue& catalogue, ActionFilter fits, QWidget* parent = nullptr);

  void setDragEnabled(bool isEnabled);
  // Puts the focus into the field, with this text.
  void startSearch(const QString& text);

 signals:
  void chosen(const QString& typeName);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void search();
  void choose(const QModelIndex& index);

  PaletteModel* m_model;
  QLineEdit* m_field;
  QAction* m_fieldIcon;
  QTreeView* m_list;
};

}  // namespace kelvarin
