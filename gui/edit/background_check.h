// Checks a graph beside the user-interface thread.
//
// Used by: EditWindow. Threads: the user-interface thread; the signal comes on it.
#pragma once

#include <memory>
#include <vector>

#include <QObject>

#include "gui/threads/job_thread.h"
#include "gui/threads/posted_calls.h"
#include "host/contract/host_session.h"
#include "host/engine/graph_reader.h"
#include "host/engine/run_graph.h"

namespace kelvarin {

class BackgroundCheck : public QObject {
  Q_OBJECT

 public:
  // Catalogue and session, in which checks log, outlive this object.
  BackgroundCheck(std::vector<ParameterOverride> settings, const ActionCatalogue& catalogue,
                  HostSession& session, QObject* parent = nullptr);
  // Stops a check and waits for its end.
  ~BackgroundCheck() override;

  // `file` is the document's name in messages and the base of relative paths.
  void start(const QByteArray& document, const QString& file);
  bool isRunning() const { return m_isRunning; }
  void stop();

 signals:
  void ended(bool isOk);

 private:
  bool check(const QByteArray& document, const QString& file, RunRecord& record) const;

  const std::vector<ParameterOverride> m_settings;
  const ActionCatalogue& m_catalogue;
  HostSession& m_session;
  std::shared_ptr<RunRecord> m_record;
  bool m_isRunning = false;
  PostedCalls m_reports;
  JobThread m_jobs;
};

}  // namespace kelvarin
