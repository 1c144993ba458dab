// The file of the open graph, read, saved and watched beside the user-interface thread.
//
// While it is open, a lock says so to other windows and programs.
// Used by: EditWindow, HostWindow.
// Threads: the user-interface thread; the signals come on it. One job at a time, in the order in
// which they were asked for.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>

#include "base/result.h"
#include "gui/document/graph_lock.h"
#include "gui/document/prepared_graph.h"
#include "gui/threads/job_thread.h"
#include "gui/threads/posted_calls.h"
#include "host/engine/graph_reader.h"

namespace kelvarin {

class DocumentFile : public QObject {
  Q_OBJECT

 public:
  explicit DocumentFile(QObject* parent = nullptr);
  // Waits for the end of the job.
  ~DocumentFile() override = default;

  enum class OpenMode {
    alone,  // foundLock() instead where the graph is open elsewhere
    copy,   // to be saved under another name
    shared,
  };
  enum class SaveMode { ifUnchangedOnDisk, always };

  // What is done with a document beside the user-interface thread before it is reported as opened.
  using Preparation = std::function<std::shared_ptr<PreparedGraph>(const QString& path,
                                                                   const QByteArray& document)>;
  void setPreparation(Preparation preparation) { m_preparation = std::move(preparation); }

  // Empty for a graph that was never saved, and for a copy.
  const QString& path() const { return m_path; }
  void forget();
  // A graph is shown that was recovered; the digest is of the file's content that it came from.
  void resume(const QString& path, const QByteArray& digest);
  void open(const QString& path, OpenMode mode = OpenMode::alone);
  // Opens the same file again, as it was opened.
  void reload();
  void save(const QByteArray& document, const QString& path, SaveMode mode);
  // Looks whether somebody else has written or removed the file since it was read or saved here;
  // it is looked at every few seconds besides.
  void compareWithDisk();
  // The user knows what is there now; the next save replaces it without a question.
  void acceptDisk();

 signals:
  // `path` is the file that was read, also for a copy; `prepared` is null without a preparation.
  void opened(const QString& path, const QByteArray& document,
              const std::shared_ptr<kelvarin::PreparedGraph>& prepared);
  // Also of a document that is no graph, where there is a preparation. What was open still is.
  void openFailed(const QString& path, const std::vector<kelvarin::GraphError>& faults);
  void foundLock(const QString& path, const QString& holder);
  void saved(const QByteArray& document);
  void saveFailed(const QString& path, const QString& reason);
  // Found by save() in the mode `ifUnchangedOnDisk`, which then wrote nothing.
  void saveFoundOtherFile(const QByteArray& onDisk);
  // Once for each state of the disk.
  void changedOnDisk(const QByteArray& onDisk);
  void goneFromDisk(const QString& path);

 private:
  struct DiskState {
    bool exists = false;
    qint64 size = 0;
    QDateTime modified;
    bool operator==(const DiskState&) const = default;
  };

  // For jobs.
  static DiskState stateOf(const QString& path);
  void read(const QString& path, OpenMode mode);
  void write(const QByteArray& document, const QString& path, SaveMode mode);
  void look(const QString& path);
  // Fails with who has the graph open.
  Status<QString> lock(const QString& path);
  void noteDisk(const QString& path, const QByteArray& content);
  bool isOtherOnDisk(const QString& path) const;

  Preparation m_preparation;
  QString m_path;
  OpenMode m_mode = OpenMode::alone;
  QTimer m_watch;
  std::atomic<bool> m_isLooking = false;
  QString m_pathOnDisk;       // used by jobs only, as what follows
  QByteArray m_digestOnDisk;  // of the content that was last read or saved
  DiskState m_looked;
  std::unique_ptr<GraphLock> m_lock;
  QString m_sharedPath;  // that the user wanted to open without a lock
  PostedCalls m_reports;
  JobThread m_jobs;
};

}  // namespace kelvarin
