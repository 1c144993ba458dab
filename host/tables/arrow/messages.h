// Why Parquet and Arrow files are not available.
#pragma once

#include <QString>

namespace kelvarin::table_messages {

inline QString formatsNotLoaded(const QString& reason) {
  return QStringLiteral(
             "Parquet and Arrow files cannot be read or written: %1. The library comes with the "
             "program; install it again.")
      .arg(reason);
}

}  // namespace kelvarin::table_messages
