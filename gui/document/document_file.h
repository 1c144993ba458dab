// The file of the open graph, read and saved beside the user-interface thread.
//
// Threads: the user-interface thread; the signals come on it. One job at a time, in the order in
// which they were asked for.
#pragma once

#include <functional>

#include <QObject>
#include <QString>
#include <QThreadPool>

namespace kelvarin {

class DocumentFile : public QObject {
  Q_OBJECT

 public:
  explicit DocumentFile(QObject* parent = nullptr);
  // Waits for the end of the job.
  ~DocumentFile() override;

  enum class SaveMode { ifUnchangedOnDisk, always };

  // Empty for a graph that was never saved.
  const QString& path() const { return m_path; }
  void forget();
  // A graph is shown that was recovered; the digest is of the file's content that it came from.
  void resume(const QString& path, const QByteArray& digest);
  void open(const QString& path);
  void save(const QByteArray& document, const QString& path, SaveMode mode);
  // Looks whether somebody else has written the file since it was read or saved here.
  void compareWithDisk();
  // The user knows what is there now; the next save replaces it without a question.
  void acceptDisk();

 signals:
  void opened(const QString& path, const QByteArray& document);
  void openFailed(const QString& path, const QString& reason);
  void saved(const QByteArray& document);
  void saveFailed(const QString& path, const QString& reason);
  // Found by save() in the mode `ifUnchangedOnDisk`, which then wrote nothing.
  void saveFoundOtherFile(const QByteArray& onDisk);
  void changedOnDisk();

 private:
  void post(std::function<void()> report);
  // For jobs.
  bool isOtherOnDisk(const QString& path) const;

  QString m_path;
  QString m_pathOnDisk;       // used by jobs only, as what follows
  QByteArray m_digestOnDisk;  // of the content that was last read or saved
  QThreadPool m_jobs;
};

}  // namespace kelvarin
