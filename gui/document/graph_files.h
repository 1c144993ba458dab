// Reads, saves and checks graphs beside the user-interface thread.
//
// Threads: the user-interface thread; the signals come on it. One job at a time, in the order in
// which they were asked for.
#pragma once

#include <memory>

#include <QObject>
#include <QThreadPool>

#include "host/contract/host_session.h"
#include "host/engine/graph_reader.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

class GraphFiles : public QObject {
  Q_OBJECT

 public:
  // Catalogue and session, in which checks log, outlive this object.
  GraphFiles(QString file, std::vector<ParameterOverride> settings,
             const ActionCatalogue& catalogue, HostSession& session, QObject* parent = nullptr);
  // Stops a check and waits for the end of the job.
  ~GraphFiles() override;

  enum class SaveMode { ifUnchangedOnDisk, always };

  const QString& file() const { return m_file; }
  const std::vector<ParameterOverride>& settings() const { return m_settings; }
  void load();
  void save(const QByteArray& document, SaveMode mode);
  // Looks whether somebody else has written the file since it was read or saved here.
  void compareWithDisk();
  // The user knows what is there now; the next save replaces it without a question.
  void acceptDisk();
  void check(const QByteArray& document);
  bool isChecking() const { return m_isChecking; }
  void stopCheck();

 signals:
  // The content of the file.
  void loaded(const QByteArray& document);
  void refused(const std::vector<kelvarin::GraphError>& faults);
  void saved();
  void saveFailed(const QString& reason);
  // Found by save() in the mode `ifUnchangedOnDisk`, which then wrote nothing.
  void saveFoundOtherFile();
  void changedOnDisk();
  void checked(bool isOk);

 private:
  void start(std::function<void()> job);
  // For jobs: calls `report` on the user-interface thread.
  void post(std::function<void()> report);
  bool isOtherOnDisk() const;

  const QString m_file;
  const std::vector<ParameterOverride> m_settings;
  const ActionCatalogue& m_catalogue;
  HostSession& m_session;
  QByteArray m_onDisk;  // as last read or saved; used by jobs only
  std::shared_ptr<RunRecord> m_check;
  bool m_isChecking = false;
  QThreadPool m_jobs;
};

}  // namespace kelvarin
