// A CSV file from the start of its data, as the bulk reader takes it.
//
// The bulk reader reads on a thread of its own, which may outlive its last use: the stream keeps
// the file open. Threads: read by one thread at a time; the questions afterwards, when the end has
// been reached.
#pragma once

#include <atomic>
#include <memory>

#include "arrow/io/interfaces.h"
#include "arrow/result.h"
#include "host/tables/csv/csv_file.h"
#include "host/tables/csv/csv_scanner.h"

namespace kelvarin {

class CsvStream : public arrow::io::InputStream {
 public:
  // From `offset` of a file that can be read again.
  CsvStream(std::shared_ptr<CsvFile> file, const CsvDialect& dialect, long long offset);
  // Of a pipe: what was read already, then the rest.
  CsvStream(std::shared_ptr<CsvFile> file, const CsvDialect& dialect, long long firstLine,
            std::string bytesRead);

  arrow::Status Close() override;
  bool closed() const override { return m_isClosed; }
  arrow::Result<std::int64_t> Tell() const override { return m_position; }
  arrow::Result<std::int64_t> Read(std::int64_t size, void* out) override;
  arrow::Result<std::shared_ptr<arrow::Buffer>> Read(std::int64_t size) override;

  bool hasSeenQuote() const { return m_hasSeenQuote; }
  // Of a pipe that has ended: the line of a quote that was never closed, else 0.
  long long openQuoteLine() const { return m_openQuoteLine; }

 private:
  Result<std::size_t, QString> readFile(char* out, std::size_t size);
  void watchPipe(const char* bytes, std::size_t size, bool isEnd);

  std::shared_ptr<CsvFile> m_file;
  CsvDialect m_dialect;
  long long m_offset = 0;   // in a regular file
  std::string m_bytesRead;  // of a pipe, not given yet
  std::unique_ptr<CsvScanner> m_pipeScanner;
  std::int64_t m_position = 0;
  std::atomic<bool> m_isClosed{false};
  std::atomic<bool> m_hasSeenQuote{false};
  std::atomic<long long> m_openQuoteLine{0};
};

}  // namespace kelvarin
