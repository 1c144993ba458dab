// The Parquet side of writing: Snappy, with the ranges of values of columns and of pages.
#include <exception>

#include "host/tables/arrow_formats/parquet_columns.h"
#include "host/tables/arrow_formats/row_group_writer.h"
#include "parquet/exception.h"
#include "parquet/file_writer.h"
#include "parquet/index_location.h"
#include "parquet/metadata.h"
#include "parquet/properties.h"
#include "parquet/schema.h"

namespace kelvarin {

namespace {

using parquet::Encoding;

constexpr std::string_view kMagic = "PAR1";
// Of most columns, compressed.
constexpr std::size_t kBytesOfValue = 8;
constexpr std::size_t kExpectedIndexSize = 400;

struct EncodedChunk final : EncodedColumn {
  ParquetColumnChunk chunk;
};

parquet::LogicalType::TimeUnit::unit unitOf(int decimals) {
  using Unit = parquet::LogicalType::TimeUnit;
  return decimals == 3 ? Unit::MILLIS : decimals == 6 ? Unit::MICROS : Unit::NANOS;
}

parquet::schema::NodePtr nodeOf(const std::string& name, const StoredType& type) {
  using parquet::LogicalType;
  using parquet::Type;
  const auto node = [&name](const std::shared_ptr<const LogicalType>& logical,
                            Type::type physical) {
    return parquet::schema::PrimitiveNode::Make(name, parquet::Repetition::OPTIONAL, logical,
                                                physical);
  };
  switch (type.kind) {
    case StoredType::Kind::number:
      return node(LogicalType::None(), Type::DOUBLE);
    case StoredType::Kind::int64:
      return node(LogicalType::None(), Type::INT64);
    case StoredType::Kind::int32:
      return node(LogicalType::None(), Type::INT32);
    case StoredType::Kind::key:
      return node(LogicalType::Int(32, false), Type::INT32);
    case StoredType::Kind::boolean:
      return node(LogicalType::None(), Type::BOOLEAN);
    case StoredType::Kind::date:
      return node(LogicalType::Date(), Type::INT32);
    case StoredType::Kind::timestamp:
      return node(LogicalType::Timestamp(type.isUtc, unitOf(type.decimals)), Type::INT64);
    case StoredType::Kind::text:
      break;
  }
  return node(LogicalType::String(), Type::BYTE_ARRAY);
}

parquet::schema::NodePtr schemaOf(const OneRow& columns, const std::vector<StoredType>& types) {
  parquet::schema::NodeVector nodes;
  for (int i = 0; i < columns.sz(); ++i) {
    nodes.push_back(nodeOf(columns.colName(i).toStdString(), types[static_cast<std::size_t>(i)]));
  }
  return parquet::schema::GroupNode::Make("schema", parquet::Repetition::REQUIRED, nodes);
}

template <typename Index>
std::shared_ptr<arrow::Buffer> serialized(const Index& index) {
  MemoryStream stream(kExpectedIndexSize);
  index.WriteTo(&stream);
  return stream.bytes();
}

// A failing stream and a lack of memory make the library throw here and there.
template <typename Call>
arrow::Status guarded(Call call) {
  try {
    call();
    return arrow::Status::OK();
  } catch (const std::exception& exception) {
    return arrow::Status::IOError(exception.what());
  }
}

class ParquetWriter : public RowGroupFormat {
 public:
  arrow::Status open(std::shared_ptr<ArrowOutputStream> stream, const OneRow& columns,
                     const std::vector<StoredType>& types) override {
    return guarded([&] {
      m_types = types;
      m_stream = std::move(stream);
      m_properties =
          parquet::WriterProperties::Builder().compression(parquet::Compression::SNAPPY)->build();
      m_schema.Init(schemaOf(columns, types));
      m_metadata = parquet::FileMetaDataBuilder::Make(&m_schema, m_properties);
      PARQUET_THROW_NOT_OK(m_stream->Write(kMagic.data(), kMagic.size()));
    });
  }

  arrow::Status encode(const RowGroup& group, std::size_t column,
                       std::unique_ptr<EncodedColumn>& encoded) const override {
    ColumnPages pages(m_schema.Column(static_cast<int>(column)), m_properties,
                      (group.rowCount() + kRowsInPage) * kBytesOfValue);
    auto made = std::make_unique<EncodedChunk>();
    const ValueRange range = encodePages(group.columns()[column], m_types[column], group.rowCount(),
                                         pages, made->badValues);
    made->chunk = pages.finish(range);
    encoded = std::move(made);
    return arrow::Status::OK();
  }

  arrow::Status write(std::size_t rowCount,
                      std::vector<std::unique_ptr<EncodedColumn>> columns) override {
    return guarded([&] {
      parquet::RowGroupMetaDataBuilder& group = *m_metadata->AppendRowGroup();
      group.set_num_rows(static_cast<std::int64_t>(rowCount));
      std::int64_t size = 0;
      for (std::size_t i = 0; i < columns.size(); ++i) {
        auto& chunk = static_cast<EncodedChunk&>(*columns[i]).chunk;
        writeChunk(chunk, *group.NextColumnChunk());
        size += chunk.uncompressedSize;
        keepIndices({m_groupCount, static_cast<std::int32_t>(i)}, chunk);
      }
      group.Finish(size);
      ++m_groupCount;
    });
  }

  arrow::Status close() override {
    return guarded([&] {
      writeIndices(parquet::IndexKind::kColumnIndex, &PageIndices::column);
      writeIndices(parquet::IndexKind::kOffsetIndex, &PageIndices::offset);
      parquet::WriteFileMetaData(*m_metadata->Finish(), m_stream.get());
      PARQUET_THROW_NOT_OK(m_stream->Close());
    });
  }

 private:
  // By which readers find the pages of a column, and skip those whose values they do not want, as
  // they come at the end of the file.
  struct PageIndices {
    parquet::ColumnChunkId id;
    std::shared_ptr<arrow::Buffer> column;
    std::shared_ptr<arrow::Buffer> offset;
  };

  static ValueRange encodePages(const GroupColumn& column, const StoredType& type,
                                std::size_t rowCount, ColumnPages& pages, BadValues& bad) {
    if (isTyped(column, type)) {
      return withTypedColumn(column, rowCount, type, bad, [&](const auto& values) {
        return encodeTyped(values, rowCount, pages);
      });
    }
    switch (column.type) {
      case MetaTypeColumn::number:
        return encodeNumbers(column, rowCount, pages);
      case MetaTypeColumn::key:
        return encodeKeys(column, rowCount, pages);
      default:
        return encodeTexts(column, rowCount, pages);
    }
  }

  void writeChunk(ParquetColumnChunk& chunk, parquet::ColumnChunkMetaDataBuilder& metadata) {
    const std::int64_t position = *m_stream->Tell();
    PARQUET_THROW_NOT_OK(m_stream->Write(chunk.bytes->data(), chunk.bytes->size()));
    const bool isCoded = chunk.dictionarySize > 0;
    std::map<Encoding::type, std::int32_t> dictionaryEncodings;
    if (isCoded) {
      dictionaryEncodings[m_properties->dictionary_page_encoding()] = 1;
    }
    metadata.SetStatistics(chunk.statistics);
    metadata.Finish(
        chunk.rowCount, isCoded ? position : 0, -1, position + chunk.dictionarySize,
        chunk.bytes->size(), chunk.uncompressedSize, isCoded, false, dictionaryEncodings,
        {{isCoded ? m_properties->dictionary_index_encoding() : Encoding::PLAIN, chunk.pageCount}});
    chunk.bytes.reset();
    chunk.columnIndex->Finish();
    chunk.offsetIndex->Finish(position);
  }

  void keepIndices(parquet::ColumnChunkId id, const ParquetColumnChunk& chunk) {
    m_indices.push_back({id, serialized(*chunk.columnIndex), serialized(*chunk.offsetIndex)});
  }

  void writeIndices(parquet::IndexKind kind, std::shared_ptr<arrow::Buffer> PageIndices::* member) {
    parquet::IndexLocations locations;
    for (const PageIndices& indices : m_indices) {
      const arrow::Buffer& bytes = *(indices.*member);
      const std::int64_t position = *m_stream->Tell();
      PARQUET_THROW_NOT_OK(m_stream->Write(bytes.data(), bytes.size()));
      if (bytes.size() > 0) {
        locations.emplace_back(
            indices.id, parquet::IndexLocation{position, static_cast<std::int32_t>(bytes.size())});
      }
    }
    m_metadata->SetIndexLocations(kind, locations);
  }

  std::shared_ptr<ArrowOutputStream> m_stream;
  std::vector<StoredType> m_types;
  std::shared_ptr<parquet::WriterProperties> m_properties;
  parquet::SchemaDescriptor m_schema;
  std::unique_ptr<parquet::FileMetaDataBuilder> m_metadata;
  std::int32_t m_groupCount = 0;
  std::vector<PageIndices> m_indices;
};

}  // namespace

std::unique_ptr<RowGroupFormat> makeParquetWriter() {
  return std::make_unique<ParquetWriter>();
}

}  // namespace kelvarin
