// What the user's settings keep about a graph's window, by the graph's path: zoom, selection and
// panels.
//
// Threads: the user-interface thread.
#pragma once

#include <QByteArray>
#include <QString>

namespace kelvarin {

struct WindowState {
  QByteArray geometry;
  QByteArray panels;
  double zoom = 1.0;
  double centreX = 0.0;
  double centreY = 0.0;
  QString currentAction;
};

// Of the graph at this path, else of the last window.
WindowState windowStateOf(const QString& graphFile);
void keepWindowState(const QString& graphFile, const WindowState& state);

}  // namespace kelvarin
