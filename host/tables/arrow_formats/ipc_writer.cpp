// The Arrow side of writing.
#include "arrow/ipc/writer.h"
#include "host/tables/arrow_formats/batched_arrow_writer.h"

namespace kelvarin {

namespace {

class IpcWriter : public ArrowBatchWriter {
 public:
  arrow::Status open(std::shared_ptr<ArrowOutputStream> stream,
                     std::shared_ptr<arrow::Schema> schema) override {
    m_stream = stream;
    auto options = arrow::ipc::IpcWriteOptions::Defaults();
    options.use_threads = false;
    return arrow::ipc::MakeFileWriter(m_stream.get(), schema, options).Value(&m_writer);
  }
  arrow::Status write(const arrow::RecordBatch& batch) override {
    return m_writer->WriteRecordBatch(batch);
  }
  arrow::Status close() override { return m_writer->Close(); }

 private:
  std::shared_ptr<ArrowOutputStream> m_stream;
  std::shared_ptr<arrow::ipc::RecordBatchWriter> m_writer;
};

}  // namespace

std::unique_ptr<ArrowBatchWriter> makeIpcWriter() {
  return std::make_unique<IpcWriter>();
}

}  // namespace kelvarin
