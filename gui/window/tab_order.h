// Where Tab leads in a window with panels: through its parts in the order of reading, and past
// panels that lie behind others.
//
// Qt keeps the order in which widgets were made, and counts a panel behind others as visible.
// Used by: HostWindow. Threads: the user-interface thread.
#pragma once

class QMainWindow;
class QWidget;

namespace kelvarin {

// After or before the widget that has the focus; null where nothing takes it.
QWidget* nextInTabOrder(const QMainWindow& window, bool isForward);

}  // namespace kelvarin
