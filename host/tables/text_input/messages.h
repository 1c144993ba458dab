// What the log says about texts that are compressed.
#pragma once

#include "host/tables/files/messages.h"

namespace kelvarin::text_messages {

inline QString noMemory() {
  return QStringLiteral("there is not enough memory");
}

inline QString compressedCutOff(const QString& file, const QString& format, long long size) {
  return table_messages::atLocation(
      table_messages::fileSource(file),
      QStringLiteral("its %1 data is cut off, after %2 bytes. Was it copied as a whole?")
          .arg(format)
          .arg(size));
}

inline QString compressedDamaged(const QString& file, const QString& format, long long position,
                                 const QString& reason) {
  return table_messages::atLocation(
      table_messages::fileSource(file),
      QStringLiteral("its %1 data is damaged near byte %2 (%3). Get the file anew.")
          .arg(format)
          .arg(position)
          .arg(reason));
}

}  // namespace kelvarin::text_messages
