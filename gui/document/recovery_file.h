// A recovery file that belongs to this process, and the search for those whose process has died.
//
// A lock file beside each names its process, so files of programs that still run stay theirs.
// Used by: recovery_journal.h, gui/recovery.
// Threads: one at a time. All operations wait for the disk.
#pragma once

#include <memory>
#include <vector>

#include <QLockFile>

#include "base/result.h"
#include "gui/document/recovery_record.h"

namespace kelvarin {

class RecoveryFile {
 public:
  // With a lock, and no file before the first write().
  static Result<std::unique_ptr<RecoveryFile>, QString> create(const QString& folder);
  // Of processes that have died, with a record that can be read; each is ours from now on. What a
  // write left that did not end is removed.
  static std::vector<std::unique_ptr<RecoveryFile>> takeAbandoned(const QString& folder);
  // Leaves the file to whoever searches next.
  ~RecoveryFile() = default;

  // As found; empty for a new one.
  const RecoveryRecord& found() const { return m_found; }
  const QString& path() const { return m_path; }
  // Replaces the content as a whole; what it says is on the disk afterwards.
  Status<QString> write(const RecoveryRecord& record) const;
  void remove() const;

 private:
  explicit RecoveryFile(const QString& path);
  bool read();

  QString m_path;
  QLockFile m_lock;
  RecoveryRecord m_found;
};

// Of this user and program.
QString recoveryFolder();

}  // namespace kelvarin
