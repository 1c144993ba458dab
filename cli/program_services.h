// What the program offers to the graphs it runs: their log and the question about a full disk.
//
// The thread that makes it works in its session while it lives.
// Threads: any.
#pragma once

#include <mutex>

#include "cli/console.h"
#include "cli/disk_wait.h"
#include "host/contract/host_services.h"
#include "host/contract/host_session.h"

namespace kelvarin {

class ProgramServices : public HostServices {
 public:
  // `graphFile` is how positions in the graph are called; empty where there is no graph, so that
  // the user can set nothing but options of the command line.
  explicit ProgramServices(Console& console, int diskWaitSeconds = 60,
                           const QString& graphFile = QString());

  void log(LogLevel level, const QString& text, const ActionItem* action) override;
  // The text, and after an error or a warning the position in the graph to look at.
  void logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                   const LogDetails& details) override;
  bool outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) override;

 private:
  LogOrigin originOf(const ActionItem& action, const LogDetails& details) const;
  void writePosition(const QString& text, const ActionItem& action, const LogDetails& details,
                     const QString& position);

  Console& m_console;
  DiskWait m_diskWait;
  const QString m_graphFile;
  std::mutex m_mutex;      // guards m_lastPosition
  QString m_lastPosition;  // written last, so that many lines about one position name it once
  HostSession m_session{this};
  const HostSession::Scope m_scope{&m_session};
};

}  // namespace kelvarin
