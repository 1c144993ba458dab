// Where a log line leads: what its text is about, as far as the action that logs it knows.
//
// Actions pass it to logWithDetails(); the command line prints it for people after the text, and
// writes it for programs as keys of its own.
// Threads: any.
#pragma once

#include <vector>

#include <QString>

#include "base/export.h"
#include "host/contract/main_ui.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

// What a variable of an expression had in a row.
struct LoggedValue {
  QString name;
  QString value;  // null for a missing value
  bool isText = false;
};

struct LogDetails {
  XMLNode::Position elementPosition;  // in the graph file; line 0: that of the action
  QString column;                     // of the table
  QString output;                     // of an expression action
  QString token;                      // of the expression
  int position = -1;   // of the token, in 16-bit units of the expression, counted from 0
  long long row = -1;  // counted from 0
  QString expression;  // as the user wrote it
  std::vector<LoggedValue> values;  // of its variables, in that row
  bool explains = false;  // says more about the line before it, and is shown wherever that is
};

// MainUI::addLog() with details, on behalf of the current action.
KELVARIN_CORE void logWithDetails(LogLevel level, const QString& text, const LogDetails& details);

// An information line that explains the line before it.
KELVARIN_CORE void logExplanation(const QString& text);

}  // namespace kelvarin
