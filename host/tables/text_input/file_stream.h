// A file as the first of several stages.
//
// Threads: readNext() one at a time; bytesRead() any.
#pragma once

#include <atomic>
#include <functional>

#include "host/tables/text_input/byte_stream.h"

namespace kelvarin {

class FileStream final : public ByteStream {
 public:
  Status<QString> open(const QString& path, std::function<bool()> isStopped) {
    return m_file.open(path, std::move(isStopped));
  }
  const InputFile& file() const { return m_file; }
  InputFile& file() { return m_file; }
  long long bytesRead() const { return m_bytesRead; }

  Result<Piece, QString> readNext(char* bytes, std::size_t size, std::size_t atLeast) override {
    Result<Piece, QString> got = m_file.readNext(bytes, size, atLeast);
    m_bytesRead += got ? static_cast<long long>(got->size) : 0;
    return got;
  }

 private:
  InputFile m_file;
  std::atomic<long long> m_bytesRead{0};
};

}  // namespace kelvarin
