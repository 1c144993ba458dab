// The bytes of a table file, of a pipe, or of standard input ("-").
//
// A regular file can be read again at any offset, so that the lines of an error can be counted; a
// pipe and standard input are read once.
// Used by: the readers of host/tables.
// Threads: readAt() any; readNext() one at a time.
// Errors: texts for the user.
#pragma once

#include <cstddef>
#include <functional>

#include <QString>

#include "base/result.h"

namespace kelvarin {

class InputFile {
 public:
  // What was read.
  struct Piece {
    std::size_t size;
    bool isLast;  // nothing follows
  };

  InputFile() = default;
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  // `isStopped` is asked while readNext() waits for a pipe; true makes it fail.
  Status<QString> open(const QString& path, std::function<bool()> isStopped = [] { return false; });
  const QString& path() const { return m_path; }
  bool canReadAgain() const { return m_isRegular; }
  // -1 for a pipe.
  long long size() const { return m_size; }

  // Fewer bytes than `size` are read only at the end.
  Result<std::size_t, QString> readAt(long long offset, char* bytes, std::size_t size) const;
  // Up to `size` bytes: from a pipe, those that come without much waiting, once there are `atLeast`
  // of them.
  Result<Piece, QString> readNext(char* bytes, std::size_t size, std::size_t atLeast = 1) const;
  // How long readNext() waits for more than the bytes that are enough. The usual time is longer
  // than a program at work takes to write on, and shorter than somebody who looks at the rows would
  // notice.
  static constexpr int kUsualPatience = 10;
  void setPatience(int milliseconds) { m_patience = milliseconds; }

 private:
  static constexpr int kAnyTime = -1;

  bool waitForBytes(int milliseconds) const;
  bool hasMoreSoon() const;

  QString m_path;
  int m_descriptor = -1;
  bool m_isRegular = false;
  long long m_size = -1;
  int m_patience = kUsualPatience;
  std::function<bool()> m_isStopped;
};

}  // namespace kelvarin
