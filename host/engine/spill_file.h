// A temporary file without a name, for rows that wait and do not fit into memory.
//
// Used by: row_queue.cpp. The file vanishes with its last descriptor, so nothing remains after any
// end of the process.
// Threads: one.
// Errors: false, and errorText() says why; a full disk is put to the user first.
#pragma once

#include <cstddef>

#include <QString>

namespace kelvarin {

class SpillFile {
 public:
  // An empty folder means the system's folder for temporary files.
  explicit SpillFile(const QString& folder);
  ~SpillFile();
  SpillFile(const SpillFile&) = delete;
  SpillFile& operator=(const SpillFile&) = delete;

  // Appends; `offset` receives the position of the first byte.
  [[nodiscard]] bool append(const unsigned char* bytes, std::size_t size, long long* offset);
  [[nodiscard]] bool read(long long offset, unsigned char* bytes, std::size_t size);
  // Frees the disk space of bytes that are not needed any more, where the file system can.
  void forget(long long offset, std::size_t size);
  // Starts again at the first byte.
  void restart();

  const QString& errorText() const { return m_errorText; }

 private:
  bool open();
  bool fail(const QString& text);

  QString m_folder;
  int m_descriptor = -1;
  long long m_end = 0;
  QString m_errorText;
};

}  // namespace kelvarin
