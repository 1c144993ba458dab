// Names of files that are being written and have to vanish when the process ends without running
// destructors: after a second signal, or where a library ends it.
//
// Used by OutputFile, which enters the name that it writes under, and by the program where it ends
// at once.
// Threads: any; removeUnfinishedFiles() may be called by a signal handler.
#pragma once

#include <QByteArray>

namespace kelvarin {

// One name, entered until it is withdrawn or the object is gone.
class UnfinishedName {
 public:
  UnfinishedName() = default;
  ~UnfinishedName() { withdraw(); }
  UnfinishedName(const UnfinishedName&) = delete;
  UnfinishedName& operator=(const UnfinishedName&) = delete;

  // Replaces the one before. Throws std::bad_alloc.
  void enter(const QByteArray& path);
  void withdraw();

  struct Entry;

 private:
  Entry* m_entry = nullptr;
};

// Names that are withdrawn at the same moment may or may not be removed.
void removeUnfinishedFiles();

}  // namespace kelvarin
