#include "host/tables/csv/csv_stream.h"

#include <algorithm>
#include <cstring>

#include "arrow/buffer.h"

namespace kelvarin {

CsvStream::CsvStream(std::shared_ptr<CsvFile> file, const CsvDialect& dialect, long long offset)
    : m_file(std::move(file)), m_dialect(dialect), m_offset(offset) {}

CsvStream::CsvStream(std::shared_ptr<CsvFile> file, const CsvDialect& dialect, long long firstLine,
                     std::string bytesRead)
    : m_file(std::move(file)),
      m_dialect(dialect),
      m_bytesRead(std::move(bytesRead)),
      m_pipeScanner(std::make_unique<CsvScanner>(dialect, true, firstLine)) {}

arrow::Status CsvStream::Close() {
  m_isClosed = true;
  return arrow::Status::OK();
}

arrow::Result<std::int64_t> CsvStream::Read(std::int64_t size, void* out) {
  char* bytes = static_cast<char*>(out);
  const auto got = readFile(bytes, static_cast<std::size_t>(size));
  if (!got) {
    return arrow::Status::IOError(got.error().toStdString());
  }
  if (m_dialect.hasQuote && !m_hasSeenQuote) {
    m_hasSeenQuote = std::memchr(bytes, m_dialect.quote, *got) != nullptr;
  }
  if (m_pipeScanner) {
    watchPipe(bytes, *got, static_cast<std::int64_t>(*got) < size);
  }
  m_position += static_cast<std::int64_t>(*got);
  return static_cast<std::int64_t>(*got);
}

arrow::Result<std::shared_ptr<arrow::Buffer>> CsvStream::Read(std::int64_t size) {
  ARROW_ASSIGN_OR_RAISE(auto buffer, arrow::AllocateResizableBuffer(size));
  ARROW_ASSIGN_OR_RAISE(const std::int64_t got, Read(size, buffer->mutable_data()));
  ARROW_RETURN_NOT_OK(buffer->Resize(got, false));
  return std::shared_ptr<arrow::Buffer>(std::move(buffer));
}

Result<std::size_t, QString> CsvStream::readFile(char* out, std::size_t size) {
  if (!m_pipeScanner) {
    const auto got = m_file->readAt(m_offset, out, size);
    m_offset += got ? static_cast<long long>(*got) : 0;
    return got;
  }
  const std::size_t known = std::min(size, m_bytesRead.size());
  std::memcpy(out, m_bytesRead.data(), known);
  m_bytesRead.erase(0, known);
  const auto got = m_file->readNext(out + known, size - known);
  if (!got) {
    return Failure{got.error()};
  }
  return known + *got;
}

void CsvStream::watchPipe(const char* bytes, std::size_t size, bool isEnd) {
  const char* next = bytes;
  while (next < bytes + size) {
    m_pipeScanner->scan(next, bytes + size);
  }
  if (isEnd && m_pipeScanner->finish() && m_pipeScanner->record().isQuoteOpen) {
    m_openQuoteLine = m_pipeScanner->record().quoteLine;
  }
}

}  // namespace kelvarin
