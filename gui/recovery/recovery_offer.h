// A line at the top of a window that offers graphs which were not saved when a program ended, one
// after the other, the latest first.
//
// Used by: both windows. Threads: the user-interface thread; files are looked for beside it.
#pragma once

#include <deque>
#include <memory>

#include "gui/document/recovery_file.h"
#include "gui/threads/job_thread.h"
#include "gui/threads/posted_calls.h"
#include "host/widgets/info_line.h"

namespace kelvarin {

class RecoveryOffer : public InfoLine {
  Q_OBJECT

 public:
  explicit RecoveryOffer(QString folder = recoveryFolder(), QWidget* parent = nullptr);

  // Where a graph file is given, for this one only.
  void search(const QString& graphFile = {});
  // The one that is shown, which is offered no longer.
  std::unique_ptr<RecoveryFile> take();

 signals:
  // take() has it.
  void restoreWanted();

 private:
  void showFirst();
  void discardFirst();

  const QString m_folder;
  std::deque<std::unique_ptr<RecoveryFile>> m_found;
  PostedCalls m_reports;
  JobThread m_jobs;
};

// The file's name for the user, also of a graph that was never saved.
QString shownName(const RecoveryRecord& record);
// For the user: nothing would outlive the program now.
QString noRecoveryText(const QString& reason);

}  // namespace kelvarin
