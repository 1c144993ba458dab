// The one function that the shared library offers.
#include "arrow/device.h"
#include "base/export.h"
#include "host/tables/arrow_formats/arrow_table_reader.h"
#include "host/tables/arrow_formats/row_group_writer.h"

namespace kelvarin {

namespace {

class Formats final : public ArrowFormats {
 public:
  // The library makes its memory manager at the first use, which would be on several threads at
  // once; that it is guarded then is what the thread sanitizer does not see.
  Formats() { (void)arrow::default_cpu_memory_manager(); }

  std::unique_ptr<BatchReader> makeReader(ArrowFormat format, const QString& path,
                                          ArrowRules rules) const override {
    auto file = format == ArrowFormat::parquet ? makeParquetFile() : makeIpcFile();
    return std::make_unique<ArrowTableReader>(path, std::move(file), std::move(rules));
  }
  std::unique_ptr<BatchEncoder> makeEncoder() const override {
    return std::make_unique<GatheringEncoder>();
  }
  std::unique_ptr<TableFileWriter> makeWriter(ArrowFormat format, OutputFile& file,
                                              const QString& path, StoredColumns stored,
                                              TaskPool* pool) const override {
    auto writer = format == ArrowFormat::parquet
                      ? makeParquetWriter()
                      : makeIpcWriter(format == ArrowFormat::arrowStream);
    return std::make_unique<RowGroupWriter>(std::move(writer), file, path, std::move(stored), pool);
  }
};

}  // namespace

}  // namespace kelvarin

extern "C" KELVARIN_CORE const kelvarin::ArrowFormats* kelvarinArrowFormats() {
  static const kelvarin::Formats formats;
  return &formats;
}
