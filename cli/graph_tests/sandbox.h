// A temporary folder in which a graph runs as if it were in its own: what it reads is there by
// links, and what it writes stays in it.
//
// Absolute paths are kept below the temporary folder, so that relative ones, with or without "..",
// lead where they lead from the graph's own folder.
// Threads: any number of sandboxes at the same time.
#pragma once

#include <QString>
#include <QTemporaryDir>

#include "host/engine/graph.h"

namespace kelvarin {

class Sandbox {
 public:
  // `graph` is an absolute path.
  explicit Sandbox(const QString& graph);

  bool isValid() const { return m_folder.isValid(); }
  QString error() const { return m_folder.errorString(); }

  QString root() const { return m_root; }
  // Where a file of the system is in here.
  QString inside(const QString& path) const { return m_root + path; }
  QString graph() const { return inside(m_graph); }
  QString graphFolder() const;
  // Of the paths in a text only what the user knows.
  QString withoutRoot(QString text) const { return text.remove(m_root); }

  // Links to all of the graph's folder but its tests.
  void linkGraphFolder();
  // Files of `folder` replace those of the graph's folder.
  void layOver(const QString& folder);
  // Makes the folders that the graph writes to, without what was written there before, and links
  // to files that it reads elsewhere. The error is a text for the user.
  Status<QString> prepareFilesOf(const Graph& graph);

 private:
  void makeReal(const QString& folder);
  void linkEntries(const QString& folder, bool withoutTests);
  void link(const QString& target, const QString& path);

  QTemporaryDir m_folder;
  QString m_root;
  const QString m_graph;
};

}  // namespace kelvarin
