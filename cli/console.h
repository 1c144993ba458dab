// What the program says on standard error: log lines, which may go to a file as well, and on a
// terminal a progress line below them.
//
// Threads: any; lines do not mix.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include <QString>

#include "cli/reports/log_file.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

// Results are lost from now on: the program that reads them has ended, or the disk is full.
bool isOutputClosed();

class Console {
 public:
  // Quiet: errors, warnings and their reasons only.
  explicit Console(bool isQuiet);
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  bool isQuiet() const { return m_isQuiet; }
  // Standard error is a terminal that can erase a line, and not quiet.
  bool showsProgress() const { return m_showsProgress; }
  // Somebody is there to answer a question.
  static bool canAsk();

  // Writes every line of the log to that file, too, whether it is shown or not.
  Status<QString> keepLog(const QString& path);

  // Control characters in the text are made visible.
  void writeLog(LogLevel level, const QString& text, const LogOrigin& origin = {});
  // An information too where the console is quiet.
  void writeReason(LogLevel level, const QString& text, const LogOrigin& origin = {});
  // Replaces the progress line before.
  void showProgress(std::string_view line);
  void clearProgress();
  // Writes as it is.
  void write(std::string_view text);

 private:
  void keep(LogLevel level, const QString& text, const LogOrigin& origin);
  void show(LogLevel level, const QString& text);
  void erase();
  void put(std::string_view text);

  const bool m_isQuiet;
  const bool m_showsProgress;
  const bool m_isColoured;             // there, unless the environment's NO_COLOR forbids it
  std::unique_ptr<LogFile> m_logFile;  // null: none
  std::mutex m_mutex;
  std::string m_progress;  // the line on the screen, under m_mutex
};

}  // namespace kelvarin
