// The picture of an action as an icon for lists and boxes.
//
// Threads: the user-interface thread.
#pragma once

#include <QIcon>

#include "base/export.h"
#include "host/widgets/icons.h"

class ActionItem;

namespace kelvarin {

// Pictures have colours of their own, which a selection would swallow: there they get paper.
// Where an action has none, a drawing says what it does.
KELVARIN_CORE QIcon actionIcon(const ActionItem& action, int size);

// For an action without a picture: whether it makes rows, writes, drops or passes them on.
KELVARIN_CORE IconName iconNameOf(const ActionItem& action);

}  // namespace kelvarin
