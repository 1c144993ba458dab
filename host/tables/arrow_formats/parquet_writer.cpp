// The Parquet side of writing: one row group a batch, Snappy.
#include <exception>

#include "arrow/memory_pool.h"
#include "arrow/table.h"
#include "host/tables/arrow_formats/batched_arrow_writer.h"
#include "parquet/arrow/writer.h"
#include "parquet/properties.h"

namespace kelvarin {

namespace {

// A column with more values than these in a batch hardly repeats any; looking each of them up costs
// more than the rest of the writing. 20 thousand different numbers still fit.
constexpr std::int64_t kLargestDictionary = 256 * 1024;

class ParquetWriter : public ArrowBatchWriter {
 public:
  // Where memory did not suffice, the library's writer crashes in its destructor, which writes on.
  ~ParquetWriter() override {
    if (m_isUnfit) {
      (void)m_writer.release();
    }
  }
  arrow::Status open(std::shared_ptr<ArrowOutputStream> stream,
                     std::shared_ptr<arrow::Schema> schema) override {
    return guarded([&] {
      const auto properties = parquet::WriterProperties::Builder()
                                  .compression(parquet::Compression::SNAPPY)
                                  ->dictionary_pagesize_limit(kLargestDictionary)
                                  ->build();
      return parquet::arrow::FileWriter::Open(*schema, arrow::default_memory_pool(), stream,
                                              properties)
          .Value(&m_writer);
    });
  }
  arrow::Status write(const arrow::RecordBatch& batch) override {
    return guarded([&] {
      const auto table = arrow::Table::Make(batch.schema(), batch.columns(), batch.num_rows());
      return m_writer->WriteTable(*table, batch.num_rows());
    });
  }
  arrow::Status close() override {
    return guarded([&] { return m_writer->Close(); });
  }

 private:
  // A failing stream makes the library throw here and there.
  template <typename Call>
  arrow::Status guarded(Call call) {
    try {
      const arrow::Status status = call();
      m_isUnfit |= status.IsOutOfMemory();
      return status;
    } catch (const std::exception& exception) {
      m_isUnfit = true;
      return arrow::Status::IOError(exception.what());
    }
  }

  std::unique_ptr<parquet::arrow::FileWriter> m_writer;
  bool m_isUnfit = false;
};

}  // namespace

std::unique_ptr<ArrowBatchWriter> makeParquetWriter() {
  return std::make_unique<ParquetWriter>();
}

}  // namespace kelvarin
