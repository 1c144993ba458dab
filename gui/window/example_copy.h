// An example that is open as a copy: says when its folder cannot be written, and takes the data
// that it reads along when it is saved elsewhere.
//
// Used by: host_window.h.
// Threads: the user-interface thread; files are looked at and copied beside it.
#pragma once

#include <QObject>

#include "gui/document/edited_graph.h"
#include "host/widgets/background_task.h"

namespace kelvarin {

class ExampleCopy : public QObject {
  Q_OBJECT

 public:
  explicit ExampleCopy(const EditedGraph& graph, QObject* parent = nullptr);

  // The example at this path is shown; empty: another graph is.
  void begin(const QString& path);
  bool isOpen() const { return !m_folder.isEmpty(); }
  // It was saved here: what it reads by relative names is copied to where they lead now.
  void takeFilesTo(const QString& path);

 signals:
  // A run has nowhere to put its results.
  void folderIsReadOnly(const QString& folder);
  void filesTaken(const QStringList& files);
  void failed(const QString& why);

 private:
  QStringList relativeNames() const;

  const EditedGraph& m_graph;
  QString m_folder;  // of the example; empty where none is open
  BackgroundTask m_task;
};

}  // namespace kelvarin
