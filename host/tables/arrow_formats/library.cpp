// The one function that the shared library offers.
#include "base/export.h"
#include "host/tables/arrow_formats/arrow_batch_reader.h"
#include "host/tables/arrow_formats/batched_arrow_writer.h"

namespace kelvarin {

namespace {

class Formats final : public ArrowFormats {
 public:
  std::unique_ptr<BatchReader> makeReader(ArrowFormat format, const QString& path,
                                          ColumnRules rules) const override {
    auto file = format == ArrowFormat::parquet ? makeParquetFile() : makeIpcFile();
    return std::make_unique<ArrowBatchReader>(path, std::move(file), std::move(rules));
  }
  std::unique_ptr<ArrowTableWriter> makeWriter(ArrowFormat format, OutputFile& file,
                                               const QString& path) const override {
    auto writer = format == ArrowFormat::parquet ? makeParquetWriter() : makeIpcWriter();
    return std::make_unique<BatchedArrowWriter>(std::move(writer), file, path);
  }
};

}  // namespace

}  // namespace kelvarin

extern "C" KELVARIN_CORE const kelvarin::ArrowFormats* kelvarinArrowFormats() {
  static const kelvarin::Formats formats;
  return &formats;
}
