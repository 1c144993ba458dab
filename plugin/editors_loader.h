// Opens the library with the editors, which lies beside the plug-in, when the first editor is asked
// for, so that programs without a screen never load it.
//
// Threads: the user-interface thread.
// Errors: null, and one line in the log when the library cannot be used.
#pragma once

class ActionItem;
class QWidget;
class UpdateClassWidget;

namespace kelvarin {

// The editor of an action of this plug-in, a child of `parent`; null in a process without a screen.
UpdateClassWidget* createEditor(QWidget* parent, ActionItem* action);

}  // namespace kelvarin
