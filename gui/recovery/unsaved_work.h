// Keeps the recovery file of the open graph up to date: after each command, and every two seconds
// with what is being typed.
//
// Used by: both windows. Threads: the user-interface thread.
#pragma once

#include <QTimer>

#include "gui/document/graph_commands.h"
#include "gui/document/recovery_journal.h"

namespace kelvarin {

class PropertyPanel;

class UnsavedWork : public QObject {
  Q_OBJECT

 public:
  UnsavedWork(GraphCommands& commands, const PropertyPanel& properties, QObject* parent = nullptr);

  // The graph was read from or saved to this file, with this content; both are empty for a new
  // graph.
  void begin(const QString& graphFile, const QByteArray& onDisk);
  // The graph was restored from a recovery file.
  void resume(std::unique_ptr<RecoveryFile> file);
  // Nothing is left to be lost. Waits for the disk.
  void end();

 signals:
  void failed(const QString& reason);

 private:
  QMap<QString, QString> typed() const;
  void noteTyping();
  void note();

  GraphCommands& m_commands;
  const PropertyPanel& m_properties;
  RecoveryJournal m_journal;
  RecoveryRecord m_record;
  bool m_hasFile = false;
  QTimer m_soon;    // once after all that one command does
  QTimer m_typing;  // while a graph is open
};

}  // namespace kelvarin
