// An InputFile as the Arrow library reads it, from its beginning on.
//
// Used by: the reader of Arrow streams.
// Threads: one at a time; fractionRead() any.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "arrow/io/interfaces.h"
#include "arrow/result.h"
#include "host/tables/files/input_file.h"

namespace kelvarin {

class ArrowInputStream : public arrow::io::InputStream {
 public:
  // `head` has been read from the file already, and comes again.
  ArrowInputStream(std::shared_ptr<const InputFile> file, std::string head);

  // Fewer bytes than `size` only at the end.
  arrow::Result<std::int64_t> Read(std::int64_t size, void* bytes) override;
  arrow::Result<std::shared_ptr<arrow::Buffer>> Read(std::int64_t size) override;
  arrow::Result<std::int64_t> Tell() const override { return m_position; }
  arrow::Status Close() override { return arrow::Status::OK(); }
  bool closed() const override { return false; }

  const std::shared_ptr<const InputFile>& file() const { return m_file; }
  // Whoever read last wanted more than there is.
  bool isExhausted() const { return m_isExhausted; }
  // Of a pipe, -1.
  std::int64_t bytesLeft() const;
  float fractionRead() const;
  // All that has been read so far, which is kept until the first call of this.
  std::string takeRead();
  // So that a program that writes on is not cut off.
  arrow::Status readToTheEnd();

 private:
  std::shared_ptr<const InputFile> m_file;
  std::string m_head;
  std::string m_read;
  bool m_isReadKept = true;
  std::atomic<std::int64_t> m_position{0};
  bool m_isExhausted = false;
};

}  // namespace kelvarin
