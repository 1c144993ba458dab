// The icons of editors and windows: line drawings of one stroke width, in the palette's colour.
//
// An icon is drawn anew for each size and palette, so it stays sharp and readable when the screen
// or the theme changes.
#pragma once

#include <QIcon>

#include "base/export.h"
#include "host/widgets/theme.h"

namespace kelvarin {

enum class IconName {
  add,
  remove,
  up,
  down,
  left,
  right,
  play,
  stop,
  pause,
  next,
  back,
  breakpoint,
  star,
  starFilled,
  search,
  check,
  information,
  warning,
  error,
  copy,
  browse,
  save,
  reload,
  help,
  history,
  undo,
  redo,
  table,
  step,
  discard
};

KELVARIN_CORE QIcon icon(IconName name);
// The icon for it, in its colour.
KELVARIN_CORE QIcon icon(Severity severity);

}  // namespace kelvarin
