// The Arrow side of reading.
#include "arrow/io/file.h"
#include "arrow/ipc/reader.h"
#include "host/tables/arrow_formats/arrow_batch_reader.h"

namespace kelvarin {

namespace {

class IpcFile : public ArrowFile {
 public:
  arrow::Status open(const std::string& path) override {
    ARROW_ASSIGN_OR_RAISE(auto file, arrow::io::ReadableFile::Open(path));
    auto options = arrow::ipc::IpcReadOptions::Defaults();
    options.use_threads = false;
    ARROW_ASSIGN_OR_RAISE(m_reader, arrow::ipc::RecordBatchFileReader::Open(file, options));
    return m_reader->CountRows().Value(&m_rowCount);
  }
  std::shared_ptr<arrow::Schema> schema() const override { return m_reader->schema(); }
  long long rowCount() const override { return m_rowCount; }
  arrow::Result<std::shared_ptr<arrow::RecordBatch>> nextBatch() override {
    if (m_nextBatch == m_reader->num_record_batches()) {
      return nullptr;
    }
    return m_reader->ReadRecordBatch(m_nextBatch++);
  }

 private:
  std::shared_ptr<arrow::ipc::RecordBatchFileReader> m_reader;
  std::int64_t m_rowCount = -1;
  int m_nextBatch = 0;
};

}  // namespace

std::unique_ptr<ArrowFile> makeIpcFile() {
  return std::make_unique<IpcFile>();
}

}  // namespace kelvarin
