#include "ui/debugger/debugger_texts.h"

#include <cmath>

#include <QCoreApplication>
#include <QLocale>

namespace kelvarin::debugger_texts {

namespace {

QString text(const char* words) {
  return QCoreApplication::translate("Debugger", words);
}

QString count(long long number) {
  return QLocale().toString(static_cast<qlonglong>(number));
}

QString whyStopped(StopReason reason) {
  switch (reason) {
    case StopReason::breakpoint:
      return text(QT_TRANSLATE_NOOP("Debugger", "Row %1, stopped at a breakpoint."));
    case StopReason::condition:
      return text(QT_TRANSLATE_NOOP(
          "Debugger", "Row %1, stopped: the condition of the breakpoint cannot be evaluated."));
    case StopReason::row:
      return text(QT_TRANSLATE_NOOP("Debugger", "Row %1, the one that was asked for."));
    case StopReason::failure:
      return text(QT_TRANSLATE_NOOP("Debugger", "Row %1, stopped at an error."));
    case StopReason::null:
      return text(QT_TRANSLATE_NOOP("Debugger", "Row %1, stopped at a null or NaN result."));
    case StopReason::lastRow:
      return text(QT_TRANSLATE_NOOP("Debugger", "Row %1: its error ended the run."));
    case StopReason::step:
    case StopReason::none:
      break;
  }
  return text(QT_TRANSLATE_NOOP("Debugger", "Row %1."));
}

}  // namespace

QString reason(StopReason reason) {
  switch (reason) {
    case StopReason::none:
      return {};
    case StopReason::step:
      return text(QT_TRANSLATE_NOOP("Debugger", "step"));
    case StopReason::breakpoint:
      return text(QT_TRANSLATE_NOOP("Debugger", "breakpoint"));
    case StopReason::condition:
      return text(QT_TRANSLATE_NOOP("Debugger", "condition failed"));
    case StopReason::row:
      return text(QT_TRANSLATE_NOOP("Debugger", "run to row"));
    case StopReason::failure:
      return text(QT_TRANSLATE_NOOP("Debugger", "error"));
    case StopReason::null:
      return text(QT_TRANSLATE_NOOP("Debugger", "null result"));
    case StopReason::lastRow:
      return text(QT_TRANSLATE_NOOP("Debugger", "end by error"));
  }
  return {};
}

QString rowShown(const DebugState& state, std::size_t shown) {
  const DebuggedRow& row = *state.rows.at(shown);
  QString said = whyStopped(row.reason).arg(count(row.row.number));
  if (const std::size_t behind = state.rows.size() - 1 - shown; behind > 0) {
    said += u' ' + text(QT_TRANSLATE_NOOP("Debugger", "The newest row is %1."))
                       .arg(count(state.rows.newest()->row.number));
  }
  if (!row.row.isEvaluated) {
    said += u' ' +
            text(QT_TRANSLATE_NOOP("Debugger", "In sampling, rows are counted and not evaluated."));
  }
  if (!row.note.isEmpty()) {
    said += u'\n' + row.note;
  }
  for (const ObservedFailure& failure : row.row.failures) {
    said += u'\n' + failure.text;
  }
  return said;
}

QString running(const DebugState& state) {
  if (state.rowCount == 0) {
    return text(QT_TRANSLATE_NOOP("Debugger", "Running; the first row has not come yet."));
  }
  return text(QT_TRANSLATE_NOOP("Debugger", "Running: %1 rows, %2 a second."))
      .arg(count(state.rowCount), count(std::llround(state.rowsPerSecond)));
}

QString ended(const DebugState& state) {
  if (state.rowCount == 0) {
    return text(QT_TRANSLATE_NOOP(
        "Debugger", "The run has ended without a row. Where it failed, the log says why."));
  }
  return text(QT_TRANSLATE_NOOP("Debugger", "The run has ended after %1 rows."))
      .arg(count(state.rowCount));
}

}  // namespace kelvarin::debugger_texts
