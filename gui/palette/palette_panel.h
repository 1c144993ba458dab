// The list of actions at the left of the canvas, with a search; drag, double click or Enter adds
// one.
//
// Threads: the user-interface thread.
#pragma once

#include <QWidget>

#include "host/engine/action_catalogue.h"

namespace kelvarin {

// Of a drag from the palette: the type name as UTF-8.
inline constexpr char kActionTypeMime[] = "application/x-kelvarin-action-type";

class PalettePanel : public QWidget {
  Q_OBJECT

 public:
  explicit PalettePanel(const ActionCatalogue& catalogue, QWidget* parent = nullptr);

  void focusSearch();

 signals:
  void chosen(const QString& typeName);

 private:
  class Parts;
};

}  // namespace kelvarin
