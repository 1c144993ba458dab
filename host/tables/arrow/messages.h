// What the log says about Parquet and Arrow files as such; value_messages.h is about their values.
#pragma once

#include <QString>

namespace kelvarin::table_messages {

inline QString formatsNotLoaded(const QString& reason) {
  return QStringLiteral(
             "Parquet and Arrow files cannot be read or written: %1. The library comes with the "
             "program; install it again.")
      .arg(reason);
}

inline QString nothingInFile() {
  return QStringLiteral("there is nothing in it");
}
inline QString neitherFileNorStream() {
  return QStringLiteral("it is neither an Arrow file nor an Arrow stream");
}
inline QString isFirstFeather() {
  return QStringLiteral(
      "it is a Feather file of version 1, which is not read; write it again as version 2, which is "
      "an Arrow file");
}
inline QString parquetThroughPipe() {
  return QStringLiteral(
      "a Parquet file is read from its end, so it cannot come through a pipe; name a file on the "
      "disk");
}
inline QString recordBatch(int number) {
  return QStringLiteral("record batch %1").arg(number);
}
inline QString streamWithoutEnd(const QString& source) {
  return QStringLiteral(
             "The Arrow stream of the %1 ends without its end mark. If the program that wrote it "
             "was cut off, rows are missing.")
      .arg(source);
}
inline QString bytesBehindStream(const QString& source, long long count) {
  return QStringLiteral(
             "The Arrow stream ends %2 bytes before the end of the %1; what follows was not read. "
             "Streams are not joined by writing one behind the other.")
      .arg(source)
      .arg(count);
}
inline QString badUnreadable(const QString& value) {
  return QStringLiteral("The attribute unreadable='%1' must be error, text or skip.").arg(value);
}
inline QString badIpcForm(const QString& value) {
  return QStringLiteral("The attribute format='%1' must be file, stream or empty.").arg(value);
}

}  // namespace kelvarin::table_messages
