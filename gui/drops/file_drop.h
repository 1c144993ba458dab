// Makes readers of the data files that a user drops on a window, each with the settings that its
// file seems to need; all of one drop are one step of undo.
//
// Used by: HostWindow. Threads: the user-interface thread; files are looked into beside it.
#pragma once

#include <QObject>
#include <QPointF>

#include "gui/document/graph_commands.h"
#include "gui/drops/dropped_files.h"

namespace kelvarin {

class FileDrop : public QObject {
  Q_OBJECT

 public:
  explicit FileDrop(GraphCommands& commands, QObject* parent = nullptr);

  // Readers stand at the position, one below the other, where no action is.
  void take(const QStringList& files, QPointF position);

 signals:
  void graphWanted(const QString& path);
  // Readers are about to be added, for which there must be a graph.
  void tablesFound();
  // The last one.
  void added(kelvarin::ActionId reader);
  void refused(const QString& why);

 private:
  void use(const std::vector<DroppedFile>& files, QPointF position);
  ActionId addReader(const DroppedFile& file, QPointF position);

  GraphCommands& m_commands;
};

}  // namespace kelvarin
