// What users read about streams that come in.
#pragma once

#include <QString>

namespace kelvarin::stream_messages {

// What the table is called in messages about its columns and values.
inline QString source() {
  return QStringLiteral("stream");
}

inline QString streamFailed(const QString& reason) {
  return QStringLiteral("The stream cannot be read: %1.").arg(reason);
}

inline QString noTable() {
  return QStringLiteral(
      "The stream cannot be read: its batches are no tables, which have columns.");
}

inline QString brokenBatch(const QString& location, const QString& fault) {
  return QStringLiteral("%1: the stream breaks the rules of its interface: %2.")
      .arg(location, fault);
}

inline QString otherColumns(const QString& expected, const QString& given) {
  return QStringLiteral(
             "The stream has other columns than those that were compiled for: %1 "
             "instead of %2.")
      .arg(given, expected);
}

inline QString declareType(const QString& column) {
  return QStringLiteral(" Choose another type for the column '%1', or let such values be null.")
      .arg(column);
}

}  // namespace kelvarin::stream_messages
