// Says that a graph is open in this window, so that no other window or program saves over it.
//
// A lock file beside the graph names the program, or one in the user's runtime folder where
// nothing can be written beside the graph. The lock of a program that has died counts no longer.
// Used by: document_file.h.
// Threads: one at a time. All operations wait for the disk.
#pragma once

#include <memory>
#include <variant>

#include <QLockFile>
#include <QString>

namespace kelvarin {

// Who has a graph open; what is not known is empty or 0.
struct GraphHolder {
  QString user;
  QString host;
  QString program;
  qint64 process = 0;
};

class GraphLock {
 public:
  // The lock, or who has it. Where no lock can be written at all, the graph counts as free.
  using Outcome = std::variant<std::unique_ptr<GraphLock>, GraphHolder>;
  static Outcome take(const QString& graphFile);

  // Whether it is the lock of this graph, by whatever path.
  bool isOf(const QString& graphFile) const;

 private:
  GraphLock(QString graphFile, const QString& lockFile);

  const QString m_graphFile;  // without links
  QLockFile m_lock;
};

}  // namespace kelvarin
