// One column of one row group of a Parquet file while it is made: its pages, compressed, in memory.
//
// A page has some thousand rows: which of them are present, then the values of those that are. The
// offsets are settled when the column is appended to the file.
// Used by: parquet_columns.cpp, which fills it; parquet_writer.cpp, which writes the result.
// Errors: exceptions of the library.
#pragma once

#include <memory>
#include <vector>

#include "arrow/buffer.h"
#include "host/tables/arrow_formats/memory_stream.h"
#include "parquet/column_writer.h"
#include "parquet/metadata.h"
#include "parquet/page_index.h"
#include "parquet/properties.h"
#include "parquet/statistics.h"

namespace kelvarin {

inline constexpr std::size_t kRowsInPage = 16 * 1024;

// What the file says about the values of a page or of a column, in Parquet's bytes.
struct ValueRange {
  bool isKnown = false;
  std::string least;
  std::string largest;
};

// A column that is complete.
struct ParquetColumnChunk {
  std::shared_ptr<arrow::Buffer> bytes;
  std::int64_t rowCount = 0;
  std::int64_t dictionarySize = 0;  // of its page; 0: no dictionary
  std::int64_t uncompressedSize = 0;
  int pageCount = 0;
  parquet::EncodedStatistics statistics;
  std::unique_ptr<parquet::ColumnIndexBuilder> columnIndex;
  std::unique_ptr<parquet::OffsetIndexBuilder> offsetIndex;
};

class ColumnPages {
 public:
  // The pages are expected to take `expectedSize` bytes; more need copying.
  ColumnPages(const parquet::ColumnDescriptor* column,
              const std::shared_ptr<parquet::WriterProperties>& properties,
              std::size_t expectedSize);

  // Plain values that codes stand for; before all pages.
  void appendDictionary(const std::uint8_t* bytes, std::size_t size, std::size_t count);

  // Space for the values of the next page.
  std::uint8_t* valuesOfPage(std::size_t maxSize);
  // One entry a row of the next page, 1 or 0, for pages with missing values.
  std::vector<std::uint32_t>& presence() { return m_presence; }
  // The next page has so many rows; its values, of so many bytes, are in valuesOfPage().
  void appendPage(std::size_t rowCount, std::size_t missingCount, std::size_t size,
                  const ValueRange& range);

  // `range` is that of all values.
  ParquetColumnChunk finish(const ValueRange& range);

 private:
  std::uint8_t* putPresence(std::size_t rowCount, std::size_t missingCount);

  ParquetColumnChunk m_chunk;
  bool m_isSigned;  // the order of the values
  std::shared_ptr<parquet::WriterProperties> m_properties;
  std::shared_ptr<MemoryStream> m_stream;
  std::unique_ptr<parquet::ColumnChunkMetaDataBuilder> m_metadata;  // of no use but to m_writer
  std::unique_ptr<parquet::PageWriter> m_writer;
  std::shared_ptr<arrow::ResizableBuffer> m_compressed;
  std::vector<std::uint8_t> m_page;
  std::vector<std::uint32_t> m_presence;
  std::int64_t m_missingCount = 0;
};

}  // namespace kelvarin
