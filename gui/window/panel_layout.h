// The state of a window's panels, brought back whatever the user is doing with them.
//
// Used by: HostWindow. Threads: the user-interface thread.
#pragma once

#include <QByteArray>

class QMainWindow;

namespace kelvarin {

// Ends the drag of a panel first, in which QMainWindow::restoreState() crashes.
void restorePanels(QMainWindow& window, const QByteArray& state);

}  // namespace kelvarin
