// The state of a window's panels, brought back whatever the user is doing with them.
//
// Used by: HostWindow. Threads: the user-interface thread.
#pragma once

#include <QByteArray>

class QMainWindow;

namespace kelvarin {

// As QMainWindow::restoreState(), which crashes where a panel is being dragged: the drag ends first.
void restorePanels(QMainWindow& window, const QByteArray& state);

}  // namespace kelvarin
