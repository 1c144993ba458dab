// The windows that only show something to read: the page of an action, and the keys of a window.
//
// Threads: the user-interface thread.
#pragma once

#include <QString>

class QWidget;

namespace kelvarin {

// The page of the action type, from the documentation; false when there is none.
bool showActionPage(const QString& typeName, QWidget* parent);
// What `window` and the editor in it answer to.
void showKeys(QWidget* window);

}  // namespace kelvarin
