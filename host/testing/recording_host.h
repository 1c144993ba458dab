// A host for tests: it keeps the log, the chosen back-ends and the help pages asked for, and
// answers a full disk.
//
// The thread that makes it works in its session while it lives; other threads enter session().
// Threads: log() and outOfDiskSpace() from any, under a lock.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "host/contract/action_report.h"
#include "host/contract/host_services.h"
#include "host/contract/host_session.h"

namespace kelvarin::testing {

using Strings = std::vector<std::string>;

struct LogLine {
  LogLevel level;
  std::string text;
  const ActionItem* action;  // null when unknown
};

class RecordingHost : public HostServices {
 public:
  HostSession& session() { return m_session; }

  std::vector<LogLine> lines() const;
  // Each line as the command line shows it: "error: ", "warning: " or "info: " and the text;
  // without those that explain others.
  Strings log() const;
  Strings explanations() const;
  void clearLog();

  // How often a full disk is answered with "write again" before the answer is to give up; none
  // unless set.
  void retryFullDisk(int times) { m_diskRetries = times; }
  // The files for which a full disk was reported.
  Strings fullDiskFiles() const;

  // Of the action that was closed last.
  const ActionReport& report() const { return m_report; }
  const Strings& backends() const { return m_backends; }
  const Strings& helpPages() const { return m_helpPages; }

  void log(LogLevel level, const QString& text, const ActionItem* action) override;
  void actionReported(const ActionItem& action, const ActionReport& report) override;
  void backendsChosen(const ActionItem& action, const QStringList& labels) override;
  bool outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) override;
  void openHelp(const QString& helpId, const QString& anchor) override;
  void logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                   const LogDetails& details) override;

 private:
  mutable std::mutex m_mutex;  // guards m_lines, m_explanations, m_fullDiskFiles and m_diskRetries
  std::vector<LogLine> m_lines;
  Strings m_explanations;
  Strings m_fullDiskFiles;
  int m_diskRetries = 0;
  ActionReport m_report;
  Strings m_backends;
  Strings m_helpPages;
  HostSession m_session{this};
  HostSession::Scope m_scope{&m_session};
};

}  // namespace kelvarin::testing
