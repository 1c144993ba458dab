// The other side: Parquet as Arrow C++ writes it by default but for the compression, from a table
// in memory, and read as record batches through small buffers. That takes less memory than reading
// whole columns of row groups, and is faster: there are fewer new pages for the system to clear.
#include <arrow/array.h>
#include <arrow/builder.h>
#include <arrow/io/file.h>
#include <arrow/memory_pool.h>
#include <arrow/record_batch.h>
#include <arrow/table.h>
#include <parquet/arrow/reader.h>
#include <parquet/arrow/writer.h>
#include <parquet/properties.h>
#include <parquet/statistics.h>

#include "benchmarks/gel/arrow_outcome.h"
#include "benchmarks/gel/digest.h"
#include "benchmarks/gel/table_format.h"

namespace kelvarin {

namespace {

constexpr std::int64_t kReadBuffer = 64 << 10;

std::shared_ptr<arrow::Array> arrayOf(const SampleColumn& column, std::size_t rows) {
  // Writing and reading have the pool of the library to themselves, as in a program of their own.
  arrow::MemoryPool* pool = arrow::system_memory_pool();
  std::shared_ptr<arrow::Array> array;
  const auto fill = [&](auto builder, auto isMissing, auto valueAt) {
    for (std::size_t row = 0; row < rows; ++row) {
      const unsigned char* value = column.value(row);
      require(isMissing(value) ? builder.AppendNull() : builder.Append(valueAt(value)));
    }
    require(builder.Finish(&array));
  };
  switch (column.type()) {
    case MetaTypeColumn::number:
      fill(
          arrow::DoubleBuilder(pool),
          [](const unsigned char* value) { return isNullNumber(numberFromBytes(value)); },
          numberFromBytes);
      return array;
    case MetaTypeColumn::key:
      fill(
          arrow::UInt32Builder(pool),
          [](const unsigned char* value) { return isNullKey(keyFromBytes(value)); }, keyFromBytes);
      return array;
    default:
      fill(arrow::StringBuilder(pool), isNullText, textFromBytes);
      return array;
  }
}

std::shared_ptr<arrow::DataType> arrowTypeOf(MetaTypeColumn type) {
  switch (type) {
    case MetaTypeColumn::number:
      return arrow::float64();
    case MetaTypeColumn::key:
      return arrow::uint32();
    default:
      return arrow::utf8();
  }
}

std::uint64_t digestOfEntry(const arrow::Array& array, std::int64_t row) {
  switch (array.type_id()) {
    case arrow::Type::DOUBLE: {
      const double number = array.IsNull(row)
                                ? kNullNumber
                                : static_cast<const arrow::DoubleArray&>(array).Value(row);
      return digestOf(MetaTypeColumn::number, reinterpret_cast<const unsigned char*>(&number));
    }
    case arrow::Type::UINT32: {
      const std::uint32_t key =
          array.IsNull(row) ? kNullKey : static_cast<const arrow::UInt32Array&>(array).Value(row);
      return digestOf(MetaTypeColumn::key, reinterpret_cast<const unsigned char*>(&key));
    }
    default: {
      if (array.IsNull(row)) {
        return 1;
      }
      const auto text = static_cast<const arrow::StringArray&>(array).GetView(row);
      return hashOfText(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    }
  }
}

void addDigest(const arrow::RecordBatch& batch, Found& found) {
  for (int i = 0; i < batch.num_columns(); ++i) {
    const arrow::Array& column = *batch.column(i);
    for (std::int64_t row = 0; row < batch.num_rows(); ++row) {
      found.digest += digestOfEntry(column, row) * (static_cast<std::uint64_t>(i) + 1);
    }
  }
}

std::uint64_t sumOfColumn(const arrow::Array& array) {
  const auto rows = static_cast<std::size_t>(array.length());
  const auto values = [&] { return static_cast<const arrow::PrimitiveArray&>(array).values(); };
  switch (array.type_id()) {
    case arrow::Type::DOUBLE:
      return sumOf<std::uint64_t>(
          values()->data() + static_cast<std::size_t>(array.offset()) * sizeof(double), rows);
    case arrow::Type::UINT32:
      return sumOf<std::uint32_t>(
          values()->data() + static_cast<std::size_t>(array.offset()) * sizeof(std::uint32_t),
          rows);
    default:
      break;
  }
  const std::int32_t* offsets = static_cast<const arrow::StringArray&>(array).raw_value_offsets();
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < rows; ++i) {
    sum += static_cast<std::uint32_t>(offsets[i + 1] - offsets[i]);
  }
  return sum;
}

void addValues(const arrow::RecordBatch& batch, Found& found) {
  for (const auto& column : batch.columns()) {
    found.added += sumOfColumn(*column);
  }
}

double addendOf(const arrow::Array& array, std::int64_t row) {
  if (array.IsNull(row)) {
    return 0.0;
  }
  return array.type_id() == arrow::Type::STRING
             ? static_cast<const arrow::StringArray&>(array).value_length(row)
             : static_cast<const arrow::DoubleArray&>(array).Value(row);
}

void addRange(const arrow::RecordBatch& batch, std::uint32_t low, std::uint32_t high,
              Found& found) {
  const auto& keys = static_cast<const arrow::UInt32Array&>(*batch.column(0));
  const arrow::Array& added = *batch.column(2);
  for (std::int64_t row = 0; row < batch.num_rows(); ++row) {
    const std::uint32_t key = keys.Value(row);
    if (key < low || key >= high) {
      continue;
    }
    ++found.rows;
    found.sum += addendOf(added, row);
  }
}

class ParquetFormat : public TableFormat {
 public:
  ParquetFormat(ParquetCompression compression, int threads)
      : m_isSnappy(compression == ParquetCompression::snappy), m_hasThreads(threads > 1) {}

  std::string name() const override { return m_isSnappy ? "parquet+snappy" : "parquet+zstd"; }

  std::string pathOf(const SampleTable& table, const std::string& folder) const override {
    return folder + "/" + table.name + (m_isSnappy ? ".snappy" : ".zstd") + ".parquet";
  }

  void prepare(const SampleTable& table) override {
    arrow::FieldVector fields;
    arrow::ArrayVector arrays;
    for (const SampleColumn& column : table.columns) {
      fields.push_back(arrow::field(column.name(), arrowTypeOf(column.type())));
      arrays.push_back(arrayOf(column, table.rows));
    }
    m_table = arrow::Table::Make(arrow::schema(fields), arrays);
  }

  void write(const SampleTable& table, const std::string& folder) override {
    const auto properties =
        parquet::WriterProperties::Builder()
            .compression(m_isSnappy ? arrow::Compression::SNAPPY : arrow::Compression::ZSTD)
            ->build();
    const auto arrowProperties =
        parquet::ArrowWriterProperties::Builder().set_use_threads(m_hasThreads)->build();
    const auto stream = valueOf(arrow::io::FileOutputStream::Open(pathOf(table, folder)));
    require(parquet::arrow::WriteTable(*m_table, arrow::default_memory_pool(), stream,
                                       parquet::DEFAULT_MAX_ROW_GROUP_LENGTH, properties,
                                       arrowProperties));
    require(stream->Close());
  }

  Found scan(const SampleTable& table, const std::string& folder,
             const std::vector<std::string>& columns, Values values) override {
    const auto reader = open(table, folder);
    const auto batches = columns.empty()
                             ? valueOf(reader->GetRecordBatchReader())
                             : valueOf(reader->GetRecordBatchReader(
                                   allRowGroups(*reader), columnIndices(*reader, columns)));
    Found found;
    forEachBatch(*batches, [&](const arrow::RecordBatch& batch) {
      found.rows += static_cast<std::uint64_t>(batch.num_rows());
      if (values == Values::digested) {
        addDigest(batch, found);
      } else {
        addValues(batch, found);
      }
    });
    return found;
  }

  Found range(const SampleTable& table, const std::string& folder) override {
    const std::uint32_t low = table.rangeBegin();
    const std::uint32_t high = table.rangeEnd();
    const auto reader = open(table, folder);
    const std::vector<int> indices = columnIndices(*reader, table.threeColumns);
    std::vector<int> groups;
    for (const int group : allRowGroups(*reader)) {
      if (mayHaveRows(*reader, group, indices[0], low, high)) {
        groups.push_back(group);
      }
    }
    Found found;
    const auto batches = valueOf(reader->GetRecordBatchReader(groups, indices));
    forEachBatch(*batches,
                 [&](const arrow::RecordBatch& batch) { addRange(batch, low, high, found); });
    return found;
  }

 private:
  using Reader = parquet::arrow::FileReader;

  std::unique_ptr<Reader> open(const SampleTable& table, const std::string& folder) const {
    auto properties = parquet::default_arrow_reader_properties();
    properties.set_use_threads(m_hasThreads);
    // Else whole row groups are read ahead into memory.
    properties.set_pre_buffer(false);
    auto readerProperties = parquet::default_reader_properties();
    readerProperties.enable_buffered_stream();
    readerProperties.set_buffer_size(kReadBuffer);
    parquet::arrow::FileReaderBuilder builder;
    require(builder.OpenFile(pathOf(table, folder), false, readerProperties));
    builder.properties(properties);
    return valueOf(builder.Build());
  }

  static std::vector<int> allRowGroups(const Reader& reader) {
    std::vector<int> groups;
    for (int group = 0; group < reader.num_row_groups(); ++group) {
      groups.push_back(group);
    }
    return groups;
  }

  static std::vector<int> columnIndices(Reader& reader, const std::vector<std::string>& columns) {
    const parquet::SchemaDescriptor* schema = reader.parquet_reader()->metadata()->schema();
    std::vector<int> indices;
    for (const std::string& column : columns) {
      indices.push_back(schema->ColumnIndex(column));
    }
    return indices;
  }

  static bool mayHaveRows(Reader& reader, int group, int column, std::uint32_t low,
                          std::uint32_t high) {
    const auto chunk = reader.parquet_reader()->metadata()->RowGroup(group)->ColumnChunk(column);
    const auto statistics =
        std::dynamic_pointer_cast<parquet::Int32Statistics>(chunk->statistics());
    return statistics == nullptr || !statistics->HasMinMax() ||
           (static_cast<std::uint32_t>(statistics->max()) >= low &&
            static_cast<std::uint32_t>(statistics->min()) < high);
  }

  template <typename Use>
  static void forEachBatch(arrow::RecordBatchReader& batches, Use use) {
    for (auto batch = valueOf(batches.Next()); batch != nullptr; batch = valueOf(batches.Next())) {
      use(*batch);
    }
  }

  const bool m_isSnappy;
  const bool m_hasThreads;
  std::shared_ptr<arrow::Table> m_table;
};

}  // namespace

std::unique_ptr<TableFormat> makeParquetFormat(ParquetCompression compression, int threads) {
  return std::make_unique<ParquetFormat>(compression, threads);
}

}  // namespace kelvarin
