// The log of a run as a file: a line for each line of the log, with TABs between the time, the
// level, the action, the position in the graph file and the text.
//
// Lines are added to what the file has, at once, so that it can be followed and outlives a killed
// process. Line breaks, TABs and backslashes of a text are written as \n, \t and \\.
// Threads: any.
#pragma once

#include <mutex>
#include <string>

#include <QString>

#include "base/result.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

// Where a line of the log comes from; empty where it is not known.
struct LogOrigin {
  QString action;
  QString position;  // FILE:LINE:COLUMN
};

class LogFile {
 public:
  LogFile() = default;
  ~LogFile();
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

  Status<QString> open(const QString& path);
  // False once, where the line cannot be written: then no more are.
  [[nodiscard]] bool write(LogLevel level, const LogOrigin& origin, const QString& text);
  const QString& path() const { return m_path; }

 private:
  QString m_path;
  std::mutex m_mutex;     // guards the descriptor
  int m_descriptor = -1;  // none
};

}  // namespace kelvarin
