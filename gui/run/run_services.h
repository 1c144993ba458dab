// What the actions of one run in a window have around them: it passes their log lines on, keeps
// those that their states show, and has the user's answer where a disk is full.
//
// A thread of the run that asks about a full disk waits until the user has answered or stopped the
// run; the questions of several threads are asked one after the other.
// Used by: graph_run.cpp.
// Threads: made on the user-interface thread; everything may be called on any.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>

#include "gui/run/action_states.h"
#include "host/engine/forwarding_services.h"

namespace kelvarin {

struct DiskQuestion {
  QString file;
  int missingBytes = 0;
  int number = 1;            // of the run's questions
  bool isStillFull = false;  // the answer before was to try again
};

class RunServices final : public ForwardingServices {
 public:
  // `news` is called on a thread of the run when messages() or question() have changed.
  RunServices(HostServices* program, std::function<void()> news)
      : ForwardingServices(program), m_news(std::move(news)) {}

  ActionMessages messages() const;
  std::optional<DiskQuestion> question() const;
  void answer(bool triesAgain);
  // All questions are answered with no from now on.
  void stopAsking();

  void logDetailed(LogLevel level, const QString& text, const ActionItem* action,
                   const LogDetails& details) override;
  bool outOfDiskSpace(const QString& file, int missingBytes, bool canRetry) override;

 private:
  const std::function<void()> m_news;
  std::mutex m_asking;         // held by the thread whose question is asked
  mutable std::mutex m_mutex;  // guards what follows
  ActionMessages m_messages;
  std::optional<DiskQuestion> m_question;
  int m_questionCount = 0;
  QString m_triedFile;  // of the last question that was answered by trying again
  std::optional<bool> m_answer;
  bool m_isStopped = false;
  std::condition_variable m_answered;
};

}  // namespace kelvarin
