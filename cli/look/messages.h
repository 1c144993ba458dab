// The texts of the commands that look into tables.
#pragma once

#include <QString>

namespace kelvarin::look_messages {

inline QString columnarNotFromInput() {
  return QStringLiteral(
      "Only CSV and Arrow can be read from standard input. Give the name of the file instead of "
      "'-'.");
}

inline QString rowsOf(const QString& rows, const QString& file) {
  return QStringLiteral("%1 in '%2'").arg(rows, file);
}

// What stands below statistics where some are estimates.
inline QString estimatedDistinct(const QString& bound) {
  return QStringLiteral(
             "~ of distinct values: estimated (HyperLogLog, error about 1 %) where a "
             "column has more than %1 of them.")
      .arg(bound);
}

inline QString estimatedQuantiles(const QString& bound) {
  return QStringLiteral(
             "~ of q25, median and q75: values of a rank within some 0.2 % (sampled) "
             "where a column has more than %1 numbers, many of them different.")
      .arg(bound);
}

inline QString estimatedCounts() {
  return QStringLiteral("~ of the most frequent value: it comes at least so often.");
}

}  // namespace kelvarin::look_messages
