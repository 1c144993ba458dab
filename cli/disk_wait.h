// What happens when a disk is full: a person at a terminal decides; without one the program waits
// and tries again for a limited time.
//
// Threads: any; one question at a time.
#pragma once

#include <mutex>
#include <optional>
#include <string>

#include <QSet>
#include <QString>

#include "cli/console.h"

namespace kelvarin {

class DiskWait {
 public:
  DiskWait(Console& console, int seconds);

  // True: write again.
  bool shouldRetry(const QString& file, int missingBytes, bool canRetry);

 private:
  void report(const QString& file, int missingBytes, bool willWait);
  // False where the run is to stop.
  bool waitAWhile(const QString& file);
  bool ask();
  std::optional<std::string> readAnswer();

  Console& m_console;
  const int m_seconds;
  std::mutex m_mutex;
  // Under m_mutex, as the next: the answer for one file, which ends the run, is that for all.
  bool m_isStopping = false;
  QSet<QString> m_reported;
  int m_waited = 0;     // seconds, over the whole run
  std::string m_typed;  // and not read as an answer yet
};

}  // namespace kelvarin
