#include "host/tables/arrow_formats/column_pages.h"

#include <cstring>

#include "host/tables/arrow_formats/column_memory.h"
#include "host/tables/arrow_formats/run_lengths.h"
#include "parquet/column_page.h"
#include "parquet/exception.h"

namespace kelvarin {

namespace {

using parquet::Encoding;

// Longer ones are left out of the file.
constexpr std::size_t kMaxRangeSize = 4096;
// Before the values of a page: the size of what says which are present, and that.
constexpr std::size_t kSizeOfSize = 4;
constexpr std::size_t kMaxPresenceSize = maxRunLengthsSize(kRowsInPage, 1);
constexpr std::size_t kValuesAt = (kSizeOfSize + kMaxPresenceSize + 7) / 8 * 8;  // aligned

parquet::EncodedStatistics encoded(const ValueRange& range, std::int64_t rowCount,
                                   std::int64_t missingCount, bool isSigned) {
  parquet::EncodedStatistics statistics;
  statistics.null_count = missingCount;
  statistics.has_null_count = true;
  statistics.all_null_value = missingCount == rowCount;
  statistics.set_is_signed(isSigned);
  if (range.isKnown && range.least.size() <= kMaxRangeSize &&
      range.largest.size() <= kMaxRangeSize) {
    statistics.set_min(range.least);
    statistics.set_max(range.largest);
    statistics.is_min_value_exact = true;
    statistics.is_max_value_exact = true;
  }
  return statistics;
}

std::shared_ptr<arrow::Buffer> viewOf(const std::uint8_t* bytes, std::size_t size) {
  return std::make_shared<arrow::Buffer>(bytes, static_cast<std::int64_t>(size));
}

}  // namespace

ColumnPages::ColumnPages(const parquet::ColumnDescriptor* column,
                         const std::shared_ptr<parquet::WriterProperties>& properties,
                         std::size_t expectedSize)
    : m_isSigned(column->sort_order() == parquet::SortOrder::SIGNED),
      m_properties(properties),
      m_stream(std::make_shared<MemoryStream>(expectedSize)),
      m_metadata(parquet::ColumnChunkMetaDataBuilder::Make(properties, column)),
      m_page(kValuesAt) {
  PARQUET_ASSIGN_OR_THROW(m_compressed, arrow::AllocateResizableBuffer(0, columnPool()));
  m_chunk.columnIndex = parquet::ColumnIndexBuilder::Make(column);
  m_chunk.offsetIndex = parquet::OffsetIndexBuilder::Make();
  m_writer = parquet::PageWriter::Open(
      m_stream, properties->compression(column->path()), m_metadata.get(), -1, -1, columnPool(),
      false, nullptr, nullptr, false, m_chunk.columnIndex.get(), m_chunk.offsetIndex.get());
}

void ColumnPages::appendDictionary(const std::uint8_t* bytes, std::size_t size, std::size_t count) {
  const parquet::DictionaryPage page(viewOf(bytes, size), static_cast<std::int32_t>(count),
                                     m_properties->dictionary_page_encoding());
  m_chunk.uncompressedSize += m_writer->WriteDictionaryPage(page);
  m_chunk.dictionarySize = m_writer->total_compressed_bytes_written();
}

std::uint8_t* ColumnPages::valuesOfPage(std::size_t maxSize) {
  if (m_page.size() < kValuesAt + maxSize) {
    m_page.resize(kValuesAt + maxSize);
  }
  return m_page.data() + kValuesAt;
}

// Ends where the values begin.
std::uint8_t* ColumnPages::putPresence(std::size_t rowCount, std::size_t missingCount) {
  std::uint8_t encodedPresence[kMaxPresenceSize];
  std::uint8_t* end = missingCount == 0
                          ? putRun(encodedPresence, 1, rowCount, 1)
                          : putRunLengths(encodedPresence, m_presence.data(), rowCount, 1);
  const auto size = static_cast<std::uint32_t>(end - encodedPresence);
  std::uint8_t* start = valuesOfPage(0) - size - kSizeOfSize;
  std::memcpy(start, &size, kSizeOfSize);
  std::memcpy(start + kSizeOfSize, encodedPresence, size);
  return start;
}

void ColumnPages::appendPage(std::size_t rowCount, std::size_t missingCount, std::size_t size,
                             const ValueRange& range) {
  const std::uint8_t* start = putPresence(rowCount, missingCount);
  const auto fullSize = static_cast<std::size_t>(m_page.data() + kValuesAt - start) + size;
  std::shared_ptr<arrow::Buffer> bytes = viewOf(start, fullSize);
  if (m_writer->has_compressor()) {
    m_writer->Compress(*bytes, m_compressed.get());
    bytes = m_compressed;
  }
  const bool isCoded = m_chunk.dictionarySize > 0;
  const auto rows = static_cast<std::int64_t>(rowCount);
  const auto missing = static_cast<std::int64_t>(missingCount);
  const parquet::DataPageV1 page(
      bytes, static_cast<std::int32_t>(rowCount),
      isCoded ? m_properties->dictionary_index_encoding() : Encoding::PLAIN, Encoding::RLE,
      Encoding::RLE, static_cast<std::int64_t>(fullSize), encoded(range, rows, missing, m_isSigned),
      m_chunk.rowCount);
  m_chunk.uncompressedSize += m_writer->WriteDataPage(page);
  m_chunk.rowCount += rows;
  m_missingCount += missing;
  ++m_chunk.pageCount;
}

ParquetColumnChunk ColumnPages::finish(const ValueRange& range) {
  m_chunk.statistics = encoded(range, m_chunk.rowCount, m_missingCount, m_isSigned);
  m_chunk.bytes = m_stream->bytes();
  return std::move(m_chunk);
}

}  // namespace kelvarin
