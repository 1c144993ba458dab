// The list of actions at the left of the canvas; drag, double click or Enter adds one.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "host/engine/action_catalogue.h"

namespace kelvarin {

class ActionChooser;

class PalettePanel : public QWidget {
  Q_OBJECT

 public:
  explicit PalettePanel(const ActionCatalogue& catalogue, QWidget* parent = nullptr);

  void focusSearch();

 signals:
  void chosen(const QString& typeName);

 private:
  ActionChooser* m_chooser;
};

}  // namespace kelvarin
