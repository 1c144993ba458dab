// What users read about graphs whose rows come from streams or go to them.
#pragma once

#include <QString>

namespace kelvarin::library_messages {

inline QString noSource(const QString& action) {
  return QStringLiteral(
             "The action '%1' cannot take the rows of a stream: it has no output pin, or other "
             "actions are linked to its input pins.")
      .arg(action);
}

inline QString noSink(const QString& action) {
  return QStringLiteral(
             "The action '%1' cannot have its rows in a stream: only actions without output pins, "
             "which write, can.")
      .arg(action);
}

inline QString notStarted() {
  return QStringLiteral("The run has not been started.");
}

inline QString alreadyStarted() {
  return QStringLiteral("The run has been started: streams are bound before, and it starts once.");
}

inline QString goesOn() {
  return QStringLiteral("The run still goes on.");
}

inline QString unknownSortColumn(const QString& column) {
  return QStringLiteral("The rows cannot be sorted on the column '%1', which the stream lacks.")
      .arg(column);
}

}  // namespace kelvarin::library_messages
