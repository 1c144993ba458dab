// The Arrow side of reading.
#include <vector>

#include "arrow/io/file.h"
#include "arrow/ipc/reader.h"
#include "arrow/record_batch.h"
#include "host/tables/arrow_formats/arrow_file.h"
#include "host/tables/arrow_formats/column_memory.h"

namespace kelvarin {

namespace {

constexpr std::int64_t kRowsInUnit = 16 * 1024;

class IpcGroup : public ArrowFileGroup {
 public:
  explicit IpcGroup(std::shared_ptr<arrow::RecordBatch> batch)
      : m_batch(std::move(batch)),
        m_rowsDone(static_cast<std::size_t>(m_batch->num_columns()), 0) {}

  std::int64_t rowCount() const override { return m_batch->num_rows(); }
  arrow::Result<std::shared_ptr<arrow::Array>> next(int column, std::int64_t rowCount) override {
    const auto& array = m_batch->column(column);
    std::int64_t& rowsDone = m_rowsDone[static_cast<std::size_t>(column)];
    if (rowsDone == 0) {
      ARROW_RETURN_NOT_OK(array->ValidateFull());
    }
    rowsDone += rowCount;
    return array->Slice(rowsDone - rowCount, rowCount);
  }

 private:
  std::shared_ptr<arrow::RecordBatch> m_batch;
  std::vector<std::int64_t> m_rowsDone;  // of each column
};

class IpcFile : public ArrowFile {
 public:
  arrow::Status open(const std::string& path) override {
    ARROW_ASSIGN_OR_RAISE(auto file, arrow::io::ReadableFile::Open(path));
    auto options = arrow::ipc::IpcReadOptions::Defaults();
    options.use_threads = false;
    options.memory_pool = columnPool();
    options.ensure_alignment = arrow::ipc::Alignment::kDataTypeSpecificAlignment;
    ARROW_ASSIGN_OR_RAISE(m_reader, arrow::ipc::RecordBatchFileReader::Open(file, options));
    return m_reader->CountRows().Value(&m_rowCount);
  }
  std::shared_ptr<arrow::Schema> schema() const override { return m_reader->schema(); }
  std::int64_t rowCount() const override { return m_rowCount; }
  std::int64_t rowsInUnit() const override { return kRowsInUnit; }
  // How many rows a batch has stands with the batch itself.
  std::int64_t skipGroups(std::int64_t) override { return 0; }
  arrow::Result<std::unique_ptr<ArrowFileGroup>> nextGroup() override {
    if (m_nextBatch == m_reader->num_record_batches()) {
      return nullptr;
    }
    ARROW_ASSIGN_OR_RAISE(auto batch, m_reader->ReadRecordBatch(m_nextBatch++));
    return std::make_unique<IpcGroup>(std::move(batch));
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
