// The Parquet side of reading.
#include <exception>

#include "arrow/io/file.h"
#include "arrow/memory_pool.h"
#include "host/tables/arrow_formats/arrow_batch_reader.h"
#include "parquet/arrow/reader.h"
#include "parquet/file_reader.h"
#include "parquet/properties.h"

namespace kelvarin {

namespace {

constexpr std::int64_t kRowsInBatch = 16 * 1024;

class ParquetFile : public ArrowFile {
 public:
  arrow::Status open(const std::string& path) override {
    return guarded([&] { return openFile(path); });
  }
  std::shared_ptr<arrow::Schema> schema() const override { return m_schema; }
  long long rowCount() const override { return m_rowCount; }
  arrow::Result<std::shared_ptr<arrow::RecordBatch>> nextBatch() override {
    std::shared_ptr<arrow::RecordBatch> batch;
    ARROW_RETURN_NOT_OK(guarded([&] { return m_batches->ReadNext(&batch); }));
    return batch;
  }

 private:
  // A damaged file makes the library throw here and there.
  template <typename Call>
  static arrow::Status guarded(Call call) {
    try {
      return call();
    } catch (const std::exception& exception) {
      return arrow::Status::Invalid(exception.what());
    }
  }

  arrow::Status openFile(const std::string& path) {
    ARROW_ASSIGN_OR_RAISE(auto file, arrow::io::ReadableFile::Open(path));
    parquet::ReaderProperties properties;
    properties.enable_buffered_stream();
    auto arrowProperties = parquet::default_arrow_reader_properties();
    arrowProperties.set_batch_size(kRowsInBatch);
    arrowProperties.set_use_threads(false);
    parquet::arrow::FileReaderBuilder builder;
    ARROW_RETURN_NOT_OK(builder.Open(file, properties));
    builder.properties(arrowProperties);
    ARROW_ASSIGN_OR_RAISE(m_reader, builder.Build());
    m_rowCount = m_reader->parquet_reader()->metadata()->num_rows();
    ARROW_RETURN_NOT_OK(m_reader->GetSchema(&m_schema));
    return m_reader->GetRecordBatchReader().Value(&m_batches);
  }

  std::unique_ptr<parquet::arrow::FileReader> m_reader;
  std::shared_ptr<arrow::Schema> m_schema;
  std::unique_ptr<arrow::RecordBatchReader> m_batches;
  long long m_rowCount = -1;
};

}  // namespace

std::unique_ptr<ArrowFile> makeParquetFile() {
  return std::make_unique<ParquetFile>();
}

}  // namespace kelvarin
