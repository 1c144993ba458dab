// The function whose call the cursor is in, and which of its arguments.
//
// Threads: any.
#pragma once

#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

namespace kelvarin {

struct CallTip {
  QString name;
  qsizetype nameStart = 0;  // in the expression
  QString before;           // "substring("
  QStringList arguments;    // "str", "index"
  QString after;            // ")"
  int argument = 0;         // the index of the one at the cursor; beyond the last: too many
  QString comment;
  QString engines;  // "Fastest, Fast and String parser"
  QString nulls;    // what a missing value does; may be empty
  QString example;  // may be empty
  QString note;     // may be empty

  QString signature() const { return before + arguments.join(QStringLiteral(", ")) + after; }
};

// None outside of calls, and for names that the language has not.
std::optional<CallTip> callTipAt(const QString& expression, qsizetype cursor);

}  // namespace kelvarin
