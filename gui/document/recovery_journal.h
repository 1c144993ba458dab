// Keeps a recovery file of the graph that is edited, so that what was not saved outlives the
// program.
//
// Each state replaces the one before as a whole; while one is written, only the latest waits.
// Threads: the user-interface thread; the disk is written beside it.
// Errors: failed() once, until it works again.
#pragma once

#include <memory>
#include <mutex>
#include <optional>

#include <QObject>

#include "gui/document/recovery_file.h"
#include "gui/threads/job_thread.h"
#include "gui/threads/posted_calls.h"

namespace kelvarin {

class RecoveryJournal : public QObject {
  Q_OBJECT

 public:
  explicit RecoveryJournal(QString folder = recoveryFolder(), QObject* parent = nullptr);
  // Waits until the latest state is on the disk. A file that was not removed is offered to the
  // next program.
  ~RecoveryJournal() override = default;

  void write(const RecoveryRecord& record);
  // Nothing is unsaved.
  void remove();
  // Goes on with a file that was found, which stays as it is until the next write() or remove().
  void adopt(std::unique_ptr<RecoveryFile> file);
  void waitForDisk() { m_jobs.waitForDone(); }

 signals:
  void failed(const QString& reason);

 private:
  struct Wanted {
    std::unique_ptr<RecoveryFile> adopted;
    bool isChanged = false;
    std::optional<RecoveryRecord> record;  // nothing: the file is to go
  };

  void schedule();
  // For jobs.
  void bringWanted();
  Status<QString> bring(const std::optional<RecoveryRecord>& record);
  void removeFile();

  const QString m_folder;
  std::mutex m_mutex;
  Wanted m_wanted;  // guarded by m_mutex, as what follows
  bool m_isScheduled = false;
  std::unique_ptr<RecoveryFile> m_file;  // used by jobs only, as what follows
  bool m_hasFailed = false;
  PostedCalls m_reports;
  JobThread m_jobs;
};

}  // namespace kelvarin
