// The colours of the canvas, made from a palette.
#pragma once

#include <QColor>
#include <QPalette>

#include "gui/document/action_state.h"

namespace kelvarin {

struct CanvasColors {
  QColor background;
  QColor grid;
  QColor box;
  QColor boxDisabled;
  QColor border;
  QColor text;
  QColor faintText;
  QColor link;
  QColor accent;  // what is selected, or can take a link
  QColor success;
  QColor warning;
  QColor error;
  QColor information;

  static CanvasColors of(const QPalette& palette);
  QColor ofState(ActionState::Kind kind) const;
  // Of a share of the largest time or number of rows, 0 to 1.
  QColor heat(double share) const;
};

QColor mixed(const QColor& one, const QColor& other, double shareOfOther);
// Black or white, whichever is easier to read on it.
QColor textColorOn(const QColor& background);

}  // namespace kelvarin
