// What the user's settings keep about the window of a graph, by the graph's path, and the graphs
// that were open last.
//
// Threads: the user-interface thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace kelvarin {

struct WindowState {
  QByteArray geometry;
  QByteArray panels;
  double zoom = 0.0;  // 0: the whole graph is to be shown
  double centreX = 0.0;
  double centreY = 0.0;
  QString currentAction;
};

// Of the graph at this path; where it has none, geometry and panels of the last window.
WindowState windowStateOf(const QString& graphFile);
void keepWindowState(const QString& graphFile, const WindowState& state);

// The latest first, as absolute paths; files may have gone meanwhile.
QStringList recentGraphs();
void noteRecentGraph(const QString& graphFile);
void forgetRecentGraph(const QString& graphFile);

}  // namespace kelvarin
