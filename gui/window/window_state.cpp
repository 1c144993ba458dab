#include "gui/window/window_state.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QPointF>
#include <QSettings>

namespace kelvarin {

namespace {

constexpr qsizetype kMaxRecent = 20;
const QString kRecentKey = QStringLiteral("graphs/recent");
const QString kLastGroup = QStringLiteral("window");

// A path is no name of a group: it has slashes.
QString groupOf(const QString& graphFile) {
  const QByteArray path = QFileInfo(graphFile).absoluteFilePath().toUtf8();
  return QStringLiteral("graphs/") +
         QString::fromLatin1(QCryptographicHash::hash(path, QCryptographicHash::Sha1).toHex());
}

void write(const QString& group, const WindowState& state) {
  QSettings settings;
  settings.beginGroup(group);
  settings.setValue(QStringLiteral("geometry"), state.geometry);
  settings.setValue(QStringLiteral("panels"), state.panels);
  settings.setValue(QStringLiteral("zoom"), state.zoom);
  settings.setValue(QStringLiteral("centre"), QPointF(state.centreX, state.centreY));
  settings.setValue(QStringLiteral("action"), state.currentAction);
}

WindowState read(const QString& group) {
  QSettings settings;
  settings.beginGroup(group);
  WindowState state;
  state.geometry = settings.value(QStringLiteral("geometry")).toByteArray();
  state.panels = settings.value(QStringLiteral("panels")).toByteArray();
  state.zoom = settings.value(QStringLiteral("zoom"), 0.0).toDouble();
  const QPointF centre = settings.value(QStringLiteral("centre")).toPointF();
  state.centreX = centre.x();
  state.centreY = centre.y();
  state.currentAction = settings.value(QStringLiteral("action")).toString();
  return state;
}

}  // namespace

WindowState windowStateOf(const QString& graphFile) {
  if (!graphFile.isEmpty() && QSettings().childGroups().contains(QStringLiteral("graphs"))) {
    const WindowState state = read(groupOf(graphFile));
    if (!state.geometry.isEmpty()) {
      return state;
    }
  }
  WindowState state = read(kLastGroup);
  state.zoom = 0.0;
  state.currentAction.clear();
  return state;
}

void keepWindowState(const QString& graphFile, const WindowState& state) {
  write(kLastGroup, state);
  if (!graphFile.isEmpty()) {
    write(groupOf(graphFile), state);
  }
}

QStringList recentGraphs() {
  return QSettings().value(kRecentKey).toStringList();
}

// What lies in the settings of graphs that are no longer recent goes with them.
void noteRecentGraph(const QString& graphFile) {
  const QString path = QFileInfo(graphFile).absoluteFilePath();
  QStringList graphs = recentGraphs();
  graphs.removeAll(path);
  graphs.prepend(path);
  QSettings settings;
  while (graphs.size() > kMaxRecent) {
    settings.remove(groupOf(graphs.takeLast()));
  }
  settings.setValue(kRecentKey, graphs);
}

void forgetRecentGraph(const QString& graphFile) {
  QStringList graphs = recentGraphs();
  graphs.removeAll(QFileInfo(graphFile).absoluteFilePath());
  QSettings().setValue(kRecentKey, graphs);
}

}  // namespace kelvarin
