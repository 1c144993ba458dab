// The bytes of a CSV file or pipe.
//
// A regular file can be read again at any offset, so that the lines of an error can be counted; a
// pipe is read once.
// Threads: readAt() any; readNext() one at a time.
// Errors: texts for the user.
#pragma once

#include <cstddef>
#include <functional>

#include <QString>

#include "base/result.h"

namespace kelvarin {

class CsvFile {
 public:
  CsvFile() = default;
  ~CsvFile();
  CsvFile(const CsvFile&) = delete;
  CsvFile& operator=(const CsvFile&) = delete;

  // `isStopped` is asked while readNext() waits for a pipe; true makes it fail.
  Status<QString> open(const QString& path, std::function<bool()> isStopped = [] { return false; });
  const QString& path() const { return m_path; }
  bool canReadAgain() const { return m_isRegular; }
  // -1 for a pipe.
  long long size() const { return m_size; }

  // Fewer bytes than `size` are read only at the end.
  Result<std::size_t, QString> readAt(long long offset, char* bytes, std::size_t size) const;
  Result<std::size_t, QString> readNext(char* bytes, std::size_t size) const;

 private:
  bool waitForBytes() const;

  QString m_path;
  int m_descriptor = -1;
  bool m_isRegular = false;
  long long m_size = -1;
  std::function<bool()> m_isStopped;
};

}  // namespace kelvarin
