// One line of the log, as windows show it.
#pragma once

#include <QString>
#include <QTime>

#include "host/contract/log_details.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

struct LogEntry {
  LogLevel level = LogLevel::information;
  QString action;  // its name; empty where no action's call logged
  QString text;
  LogDetails details;
  QTime time = {};  // when it was logged
};

}  // namespace kelvarin
