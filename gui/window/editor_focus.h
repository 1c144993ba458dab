// Where the user is in an editor: its pages, the field with the focus, the cursor; and the way back
// there in an editor that was made anew.
//
// Used by: property_panel.cpp. Threads: the user-interface thread.
#pragma once

#include "gui/document/graph_parts.h"

class QWidget;

namespace kelvarin {

EditorPosition positionIn(const QWidget& editor);
// As far as the editor has these pages and this field.
void goTo(const EditorPosition& position, QWidget& editor);

}  // namespace kelvarin
