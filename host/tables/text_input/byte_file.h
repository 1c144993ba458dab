// The bytes of a file, a pipe or standard input, as they are.
//
// Threads: readNext() one at a time; bytesRead() any.
// Errors: texts for the user.
#pragma once

#include <atomic>
#include <functional>

#include "host/tables/text_input/byte_stream.h"

namespace kelvarin {

class ByteFile final : public ByteStream {
 public:
  ByteFile() = default;
  ~ByteFile() override;
  ByteFile(const ByteFile&) = delete;
  ByteFile& operator=(const ByteFile&) = delete;

  // "-" is standard input. `isStopped` is asked while readNext() waits for a pipe; true makes it
  // fail.
  Status<QString> open(const QString& path, std::function<bool()> isStopped);
  // A regular file, which is the same when it is opened once more.
  bool canOpenAgain() const { return m_isRegular; }
  // -1 for a pipe.
  long long size() const { return m_size; }
  long long bytesRead() const { return m_bytesRead; }

  Result<Piece, QString> readNext(char* bytes, std::size_t size, std::size_t atLeast) override;

 private:
  bool waitForBytes() const;
  bool hasMoreSoon() const;

  QString m_path;
  int m_descriptor = -1;
  bool m_isRegular = false;
  long long m_size = -1;
  std::atomic<long long> m_bytesRead{0};
  std::function<bool()> m_isStopped;
};

}  // namespace kelvarin
