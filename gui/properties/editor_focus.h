// Where the user is in an editor: its pages, the field with the focus, the cursor; and the way back
// there in an editor that was made anew.
//
// Used by: the property panel, and what treats keys by the focus. Threads: the user-interface
// thread.
#pragma once

#include "gui/document/graph_parts.h"

class QWidget;

namespace kelvarin {

// Parts of the root in windows of their own count, too: floating panels, lists of drop-down fields.
bool isInside(const QWidget* widget, const QWidget& root);
// Which pages of its tabs are shown.
QString pagesOf(const QWidget& editor);
// `field` is the one with the focus; null for none.
EditorPosition positionIn(const QWidget& editor, const QWidget* field);
// As far as the editor has these pages and this field.
void goTo(const EditorPosition& position, QWidget& editor);

}  // namespace kelvarin
