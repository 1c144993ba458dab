// The texts about what a run reports.
#pragma once

#include <string>

#include <QString>

namespace kelvarin::report_messages {

inline std::string noInstant(const std::string& given) {
  return "'" + given +
         "' is no time. Write it as 2026-01-31T12:00:00Z, or with an offset, "
         "2026-01-31T12:00:00+01:00.";
}

inline std::string unknownRejects(const std::string& given) {
  return "'" + given + "': rejected rows are written to .csv, .parquet or .jsonl files.";
}

inline QString tooManyErrors(long long rows, const QString& action, const QString& expression,
                             long long row, const QString& message) {
  return QStringLiteral(
             "%1 rows have failed, so the run ends, as --max-errors says. The last one is row %2 "
             "(counted from 0) of the action '%3', in the expression '%4': %5")
      .arg(QString::number(rows), QString::number(row), action, expression, message);
}

inline QString rejectsNotWritten(const QString& file) {
  return QStringLiteral("The rejected rows are not in '%1'.").arg(file);
}

inline QString rejectsWritten(long long rows, const QString& file) {
  return QStringLiteral("%1 rows were rejected; they are in '%2'.")
      .arg(QString::number(rows), file);
}

inline QString fileOfGraph(const QString& option, const QString& file, const QString& action) {
  return QStringLiteral("The file of %1, '%2', is one of the action '%3'. Give it another name.")
      .arg(option, file, action);
}

inline QString endedByWarnings(long long warnings) {
  return QStringLiteral(
             "There were %1 warnings, so the status is 1, as --strict says. The run itself has "
             "ended well, and its files are there.")
      .arg(QString::number(warnings));
}

inline QString logNotOpened(const QString& file, const QString& reason) {
  return QStringLiteral("The log cannot be written to '%1': %2.").arg(file, reason);
}

inline QString logBroken(const QString& file) {
  return QStringLiteral("The log file '%1' cannot be written any more; lines are missing there.")
      .arg(file);
}

inline QString becauseOf(const QString& token) {
  return QStringLiteral(" because of '%1'").arg(token);
}

inline QString byBatch() {
  return QStringLiteral(", by the batch");
}

inline QString rowByRow() {
  return QStringLiteral(", row by row");
}

inline QString asOtherOutputs() {
  return QStringLiteral(" as the other outputs of the action");
}

inline QString planTitle() {
  return QStringLiteral("how a run evaluates the expressions:\n");
}

inline QString planOfOutput(const QString& action, const QString& output) {
  return QStringLiteral("  %1, %2: ").arg(action, output);
}

inline QString explanationTitle() {
  return QStringLiteral("where the time went, and how the expressions were evaluated:\n");
}

inline QString explainedAction(const QString& action, const QString& typeName,
                               const QString& time) {
  return QStringLiteral("  %1 (%2): %3").arg(action, typeName, time);
}

inline QString timeOfAction(double seconds, long long rows) {
  const QString time = QStringLiteral("%1 s").arg(QString::number(seconds, 'f', 3));
  constexpr double kNanoseconds = 1e9;
  return rows <= 0
             ? time
             : QStringLiteral("%1, %2 ns a row of %3")
                   .arg(time,
                        QString::number(seconds * kNanoseconds / static_cast<double>(rows), 'f', 1),
                        QString::number(rows));
}

inline QString blocks(long long read, long long skipped) {
  return QStringLiteral(", %1 blocks read, %2 skipped")
      .arg(QString::number(read), QString::number(skipped));
}

inline QString missingResults(long long count) {
  return QStringLiteral("%1 missing").arg(QString::number(count));
}

inline QString noNumbers(long long count) {
  return QStringLiteral("%1 NaN").arg(QString::number(count));
}

inline QString failedResults(long long count) {
  return QStringLiteral("%1 failed").arg(QString::number(count));
}

}  // namespace kelvarin::report_messages
