// A file to be written that appears under its name only when it is complete.
//
// Bytes go to a file in the same folder that has no name yet, or a temporary one where the file
// system has no such files; publish() replaces the old one with it. What the name held before stays
// until then. A temporary file that a killed process has left is removed when the same output is
// opened again. Names that stand for devices and pipes, and standard output ("-"), are written
// directly. A full disk is put to the host, which says whether to try the rest again.
// Used by: the sinks of host/tables.
// Errors: texts for the user; nothing logs.
#pragma once

#include <span>
#include <string_view>

#include <QByteArray>
#include <QString>

#include "base/result.h"
#include "base/writable_file.h"
#include "host/tables/files/unfinished_names.h"

namespace kelvarin {

class OutputFile {
 public:
  OutputFile();
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // An empty path opens nothing and fails.
  Status<QString> open(const QString& path);
  bool isOpen() const { return m_file.isOpen(); }
  // A pipe, a device or standard output.
  bool isStream() const { return m_finalPath.isEmpty(); }
  Status<QString> write(const char* bytes, std::size_t size);
  // One after the other; not of a stream.
  Status<QString> write(std::span<const std::string_view> pieces);
  long long bytesWritten() const { return m_bytesWritten; }
  // The writing failed since the program that reads standard output has seen enough: no fault.
  bool hasReaderLeft() const { return m_hasReaderLeft; }
  // All bytes are on the disk; nothing more can be written.
  Status<QString> complete();
  bool isComplete() const { return m_isComplete; }
  // Closes the completed file, which gets a temporary name: one of many that wait for the end of
  // the run. Another process that writes the same output may remove it.
  Status<QString> closeUntilPublished();
  // Gives the completed file its name.
  Status<QString> publish();
  // Removes what was written, unless it is published.
  void discard();

 private:
  Status<QString> openStream(int descriptor);
  Status<QString> openTemporary(const QByteArray& path);
  bool isStandardOutput() const;
  Status<QString> noteWritten(int error, std::size_t size);
  QString writeError(int error) const;
  // False: see errno.
  [[nodiscard]] bool takeTemporaryName();
  [[nodiscard]] bool takeFinalName();

  QString m_shownName;
  QByteArray m_finalPath;      // empty when written directly
  QByteArray m_temporaryPath;  // empty as long as the file has no name
  UnfinishedName m_unfinishedName;
  WritableFile m_file;
  bool m_isComplete = false;
  bool m_hasReaderLeft = false;
  long long m_bytesWritten = 0;
};

// A file with these bytes, in place of the one before.
Status<QString> writeWholeFile(const QString& path, std::string_view bytes);

}  // namespace kelvarin
