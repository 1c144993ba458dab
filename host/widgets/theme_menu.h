// The menu by which the user chooses the theme of the windows.
//
// Used by: the windows' view menus. Threads: the user-interface thread.
#pragma once

#include "base/export.h"

class QMenu;

namespace kelvarin {

class Theme;

// The theme outlives the menu.
KELVARIN_CORE void addThemeMenu(QMenu& menu, Theme& theme);

}  // namespace kelvarin
