// The Parquet side of reading.
#include <algorithm>
#include <exception>
#include <mutex>
#include <vector>

#include <QFile>

#include "arrow/array/array_dict.h"
#include "arrow/array/array_primitive.h"
#include "arrow/array/concatenate.h"
#include "arrow/io/file.h"
#include "arrow/record_batch.h"
#include "host/tables/arrow/messages.h"
#include "host/tables/arrow_formats/arrow_file.h"
#include "host/tables/arrow_formats/column_memory.h"
#include "parquet/arrow/reader.h"
#include "parquet/arrow/schema.h"
#include "parquet/file_reader.h"
#include "parquet/metadata.h"
#include "parquet/properties.h"

namespace kelvarin {

namespace {

constexpr double kMaxRowsInUnit = 16 * 1024;
constexpr double kMinRowsInUnit = 1024;
constexpr double kUnitBytes = 2 << 20;
constexpr std::int64_t kReadBuffer = 64 * 1024;

// A damaged file makes the library throw here and there.
template <typename Call>
arrow::Status guarded(Call call) {
  try {
    return call();
  } catch (const std::exception& exception) {
    return arrow::Status::Invalid(exception.what());
  }
}

// An open file, once for columns that are read value by value and once for texts that are read as
// codes and dictionaries.
// Threads: any, in turns; the columns that it opens are independent.
class OpenParquetFile {
 public:
  arrow::Status open(const std::string& path) {
    ARROW_ASSIGN_OR_RAISE(auto file, arrow::io::ReadableFile::Open(path));
    parquet::ReaderProperties properties(columnPool());
    properties.enable_buffered_stream();
    properties.set_buffer_size(kReadBuffer);
    auto values = parquet::ParquetFileReader::Open(file, properties);
    m_metadata = values->metadata();
    auto texts = parquet::ParquetFileReader::Open(file, properties, m_metadata);
    auto arrowProperties = parquet::default_arrow_reader_properties();
    arrowProperties.set_use_threads(false);
    ARROW_ASSIGN_OR_RAISE(m_values, readerOf(std::move(values), arrowProperties));
    for (int column = 0; column < m_metadata->num_columns(); ++column) {
      arrowProperties.set_read_dictionary(column, true);
    }
    ARROW_ASSIGN_OR_RAISE(m_texts, readerOf(std::move(texts), arrowProperties));
    return m_values->GetSchema(&m_schema);
  }
  void choose(const std::vector<int>& fields) {
    const parquet::arrow::SchemaManifest& manifest = m_values->manifest();
    for (const int field : fields) {
      std::vector<int>& leaves = m_leaves.emplace_back();
      addLeaves(manifest.schema_fields[static_cast<std::size_t>(field)], leaves);
    }
    m_rowsInUnit = rowsThatFitUnit();
    m_values->set_batch_size(m_rowsInUnit);
    m_texts->set_batch_size(m_rowsInUnit);
  }
  std::size_t columnCount() const { return m_leaves.size(); }

  const std::shared_ptr<arrow::Schema>& schema() const { return m_schema; }
  const parquet::FileMetaData& metadata() const { return *m_metadata; }

  std::int64_t rowsInUnit() const { return m_rowsInUnit; }

  arrow::Result<std::unique_ptr<arrow::RecordBatchReader>> column(int group, int column) {
    const std::lock_guard lock(m_mutex);
    const std::vector<int>& leaves = m_leaves[static_cast<std::size_t>(column)];
    const bool isCoded = leaves.size() == 1 && hasRepeatedTexts(group, leaves.front());
    return (isCoded ? m_texts : m_values)->GetRecordBatchReader({group}, leaves);
  }

 private:
  // Fewer where the rows of the chosen columns are long.
  std::int64_t rowsThatFitUnit() const {
    double bytes = 1.0;
    for (int group = 0; group < m_metadata->num_row_groups(); ++group) {
      const auto columns = m_metadata->RowGroup(group);
      for (const std::vector<int>& leaves : m_leaves) {
        for (const int leaf : leaves) {
          const auto size = columns->ColumnChunk(leaf)->total_uncompressed_size();
          bytes += std::max(static_cast<double>(size), 0.0);
        }
      }
    }
    const double rows = kUnitBytes / bytes * static_cast<double>(m_metadata->num_rows());
    return static_cast<std::int64_t>(std::clamp(rows, kMinRowsInUnit, kMaxRowsInUnit));
  }

  // A field of a nested type is stored as several columns, or as one.
  static void addLeaves(const parquet::arrow::SchemaField& field, std::vector<int>& leaves) {
    if (field.is_leaf()) {
      leaves.push_back(field.column_index);
    }
    for (const parquet::arrow::SchemaField& child : field.children) {
      addLeaves(child, leaves);
    }
  }

  static arrow::Result<std::unique_ptr<parquet::arrow::FileReader>> readerOf(
      std::unique_ptr<parquet::ParquetFileReader> file,
      const parquet::ArrowReaderProperties& properties) {
    return parquet::arrow::FileReader::Make(columnPool(), std::move(file), properties);
  }

  // All its texts are in a dictionary: without, each would take four bytes and its own.
  bool hasRepeatedTexts(int group, int leaf) const {
    const auto chunk = m_metadata->RowGroup(group)->ColumnChunk(leaf);
    return m_metadata->schema()->Column(leaf)->max_repetition_level() == 0 &&
           chunk->type() == parquet::Type::BYTE_ARRAY && chunk->has_dictionary_page() &&
           chunk->total_uncompressed_size() / 4 < chunk->num_values();
  }

  std::mutex m_mutex;
  std::shared_ptr<parquet::FileMetaData> m_metadata;
  std::unique_ptr<parquet::arrow::FileReader> m_values;
  std::unique_ptr<parquet::arrow::FileReader> m_texts;
  std::shared_ptr<arrow::Schema> m_schema;
  std::vector<std::vector<int>> m_leaves;  // of each chosen column, those that store it
  std::int64_t m_rowsInUnit = 0;
};

bool areCodesBelow(const std::int32_t* codes, std::int64_t count, std::int64_t bound) {
  std::uint32_t largest = 0;
  for (std::int64_t row = 0; row < count; ++row) {
    largest = std::max(largest, static_cast<std::uint32_t>(codes[row]));
  }
  return largest < bound;
}

// Looks at everything that a value is reached through. The library takes long for codes.
arrow::Status validate(const arrow::Array& array) {
  if (array.type_id() != arrow::Type::DICTIONARY) {
    return array.ValidateFull();
  }
  const auto& coded = static_cast<const arrow::DictionaryArray&>(array);
  const arrow::Array& codes = *coded.indices();
  const bool isSound = codes.type_id() == arrow::Type::INT32 && array.Validate().ok() &&
                       areCodesBelow(static_cast<const arrow::Int32Array&>(codes).raw_values(),
                                     codes.length(), coded.dictionary()->length());
  return isSound ? coded.dictionary()->ValidateFull() : array.ValidateFull();
}

class ParquetGroup : public ArrowFileGroup {
 public:
  ParquetGroup(std::shared_ptr<OpenParquetFile> file, int group)
      : m_file(std::move(file)),
        m_group(group),
        m_rowCount(m_file->metadata().RowGroup(group)->num_rows()),
        m_columns(m_file->columnCount()) {}

  std::int64_t rowCount() const override { return m_rowCount; }
  arrow::Result<std::shared_ptr<arrow::Array>> next(int column, std::int64_t rowCount) override {
    arrow::Status& failure = m_columns[static_cast<std::size_t>(column)].failure;
    ARROW_RETURN_NOT_OK(failure);
    std::shared_ptr<arrow::Array> rows;
    failure = guarded([&] { return read(column, rowCount).Value(&rows); });
    ARROW_RETURN_NOT_OK(failure);
    ARROW_RETURN_NOT_OK(validate(*rows));
    return rows;
  }

 private:
  struct Column {
    std::unique_ptr<arrow::RecordBatchReader> reader;
    std::shared_ptr<arrow::Array> rest;  // read, and not asked for yet
    std::int64_t rowsLeft = 0;
    arrow::Status failure;  // of the library, which is not asked again after it
  };

  // Most often the library reads as many rows as are asked for.
  arrow::Result<std::shared_ptr<arrow::Array>> read(int index, std::int64_t rowCount) {
    Column& column = m_columns[static_cast<std::size_t>(index)];
    if (column.reader == nullptr) {
      ARROW_ASSIGN_OR_RAISE(column.reader, m_file->column(m_group, index));
      column.rowsLeft = m_rowCount;
    }
    arrow::ArrayVector parts;
    std::int64_t missing = rowCount;
    while (missing > 0) {
      if (column.rest == nullptr) {
        std::shared_ptr<arrow::RecordBatch> batch;
        ARROW_RETURN_NOT_OK(column.reader->ReadNext(&batch));
        if (batch == nullptr) {
          break;
        }
        column.rest = batch->column(0);
      }
      const std::int64_t length = column.rest->length();
      parts.push_back(length > missing ? column.rest->Slice(0, missing) : column.rest);
      column.rest = length > missing ? column.rest->Slice(missing) : nullptr;
      missing -= parts.back()->length();
    }
    column.rowsLeft -= rowCount;
    if (column.rowsLeft <= 0) {
      column = {};  // its buffers are large
    }
    return joined(parts);
  }

  static arrow::Result<std::shared_ptr<arrow::Array>> joined(const arrow::ArrayVector& parts) {
    if (parts.size() == 1) {
      return parts.front();
    }
    if (parts.empty()) {
      return arrow::Status::Invalid("a column has fewer rows than its row group");
    }
    for (const auto& part : parts) {
      ARROW_RETURN_NOT_OK(part->ValidateFull());
    }
    return arrow::Concatenate(parts, columnPool());
  }

  std::shared_ptr<OpenParquetFile> m_file;
  int m_group;
  std::int64_t m_rowCount;
  std::vector<Column> m_columns;
};

class ParquetFile : public ArrowFile {
 public:
  arrow::Status open(const std::shared_ptr<const InputFile>& input) override {
    if (!input->canReadAgain()) {
      return arrow::Status::Invalid(table_messages::parquetThroughPipe().toStdString());
    }
    const std::string path = QFile::encodeName(input->path()).toStdString();
    return guarded([&] { return m_file->open(path); });
  }
  std::shared_ptr<arrow::Schema> schema() const override { return m_file->schema(); }
  arrow::Status choose(const std::vector<int>& fields) override {
    return guarded([&] {
      m_file->choose(fields);
      return arrow::Status::OK();
    });
  }
  std::int64_t rowCount() const override { return m_file->metadata().num_rows(); }
  std::int64_t rowsInUnit() const override { return m_file->rowsInUnit(); }
  std::int64_t skipGroups(std::int64_t rowCount) override {
    std::int64_t skipped = 0;
    while (m_nextGroup < m_file->metadata().num_row_groups()) {
      const std::int64_t rows = m_file->metadata().RowGroup(m_nextGroup)->num_rows();
      if (rows > rowCount - skipped) {
        break;
      }
      skipped += rows;
      ++m_nextGroup;
    }
    return skipped;
  }
  arrow::Result<std::unique_ptr<ArrowFileGroup>> nextGroup() override {
    if (m_nextGroup == m_file->metadata().num_row_groups()) {
      return nullptr;
    }
    std::unique_ptr<ArrowFileGroup> group;
    ARROW_RETURN_NOT_OK(guarded([&] {
      group = std::make_unique<ParquetGroup>(m_file, m_nextGroup++);
      return arrow::Status::OK();
    }));
    return group;
  }

 private:
  std::shared_ptr<OpenParquetFile> m_file = std::make_shared<OpenParquetFile>();
  int m_nextGroup = 0;
};

}  // namespace

std::unique_ptr<ArrowFile> makeParquetFile() {
  return std::make_unique<ParquetFile>();
}

}  // namespace kelvarin
