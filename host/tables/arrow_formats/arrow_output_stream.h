// An OutputFile as the Arrow library writes to it.
//
// Keeps the text of the first failure, which says more than the library's status, and takes nothing
// after it: the library's writers try to finish their file even then.
#pragma once

#include "arrow/io/interfaces.h"
#include "arrow/result.h"
#include "host/tables/files/output_file.h"

namespace kelvarin {

class ArrowOutputStream : public arrow::io::OutputStream {
 public:
  explicit ArrowOutputStream(OutputFile& file) : m_file(file) {}

  arrow::Status Write(const void* bytes, std::int64_t size) override {
    if (m_isAbandoned || !m_failure.isEmpty()) {
      return arrow::Status::IOError(m_failure.toStdString());
    }
    const auto status =
        m_file.write(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
    if (!status) {
      m_failure = status.error();
      return arrow::Status::IOError(m_failure.toStdString());
    }
    return arrow::Status::OK();
  }
  using arrow::io::OutputStream::Write;
  arrow::Result<std::int64_t> Tell() const override { return m_file.bytesWritten(); }
  // The sink completes the file.
  arrow::Status Close() override {
    m_isClosed = true;
    return arrow::Status::OK();
  }
  bool closed() const override { return m_isClosed; }
  const QString& failure() const { return m_failure; }
  // Nothing more is to be written, whatever a writer still has.
  void abandon() { m_isAbandoned = true; }

 private:
  OutputFile& m_file;
  QString m_failure;
  bool m_isAbandoned = false;
  bool m_isClosed = false;
};

}  // namespace kelvarin
