// The Arrow side of writing: one record batch a row group; numbers as float64, keys as uint32,
// texts as utf8, unless other types are asked for.
#include <cstring>

#include "arrow/array/util.h"
#include "arrow/buffer.h"
#include "arrow/ipc/writer.h"
#include "arrow/record_batch.h"
#include "arrow/type.h"
#include "arrow/util/bit_util.h"
#include "host/tables/arrow_formats/column_memory.h"
#include "host/tables/arrow_formats/row_group_writer.h"

namespace kelvarin {

namespace {

struct EncodedArray final : EncodedColumn {
  std::shared_ptr<arrow::Array> array;
};

std::shared_ptr<arrow::DataType> timestampType(const StoredType& type) {
  const auto unit = type.decimals == 3   ? arrow::TimeUnit::MILLI
                    : type.decimals == 6 ? arrow::TimeUnit::MICRO
                                         : arrow::TimeUnit::NANO;
  return type.isUtc ? arrow::timestamp(unit, "UTC") : arrow::timestamp(unit);
}

std::shared_ptr<arrow::DataType> arrowTypeOf(const StoredType& type) {
  switch (type.kind) {
    case StoredType::Kind::number:
      return arrow::float64();
    case StoredType::Kind::int64:
      return arrow::int64();
    case StoredType::Kind::int32:
      return arrow::int32();
    case StoredType::Kind::key:
      return arrow::uint32();
    case StoredType::Kind::boolean:
      return arrow::boolean();
    case StoredType::Kind::date:
      return arrow::date32();
    case StoredType::Kind::timestamp:
      return timestampType(type);
    case StoredType::Kind::text:
      break;
  }
  return arrow::utf8();
}

// Calls visit(value, row) for the bytes of every value of a column.
template <typename Visit>
void forEachValue(const GroupColumn& column, Visit visit) {
  std::int64_t row = 0;
  for (const GroupColumn::Piece& piece : column.pieces) {
    for (std::size_t i = 0; i < piece.rowCount; ++i) {
      visit(piece.values.value(i), row++);
    }
  }
}

// Which values are there: a bit a row, and how many are missing.
struct Presence {
  std::shared_ptr<arrow::Buffer> bits;
  std::int64_t missing = 0;

  arrow::Status begin(std::int64_t rowCount) {
    ARROW_ASSIGN_OR_RAISE(bits, arrow::AllocateBitmap(rowCount, columnPool()));
    std::memset(bits->mutable_data(), 0, static_cast<std::size_t>(bits->size()));
    arrow::bit_util::SetBitsTo(bits->mutable_data(), 0, rowCount, true);
    return arrow::Status::OK();
  }
  void clear(std::int64_t row) {
    arrow::bit_util::ClearBit(bits->mutable_data(), row);
    ++missing;
  }
};

template <typename Value, typename Read, typename IsMissing>
arrow::Result<std::shared_ptr<arrow::Array>> arrayOfValues(
    const GroupColumn& column, std::int64_t rowCount, const std::shared_ptr<arrow::DataType>& type,
    Read read, IsMissing isMissing) {
  Presence presence;
  ARROW_RETURN_NOT_OK(presence.begin(rowCount));
  std::shared_ptr<arrow::Buffer> buffer;
  ARROW_ASSIGN_OR_RAISE(
      buffer,
      arrow::AllocateBuffer(rowCount * static_cast<std::int64_t>(sizeof(Value)), columnPool()));
  auto* values = reinterpret_cast<Value*>(buffer->mutable_data());
  forEachValue(column, [&](const unsigned char* bytes, std::int64_t row) {
    const Value value = read(bytes);
    values[row] = isMissing(value) ? Value{} : value;
    if (isMissing(value)) [[unlikely]] {
      presence.clear(row);
    }
  });
  return arrow::MakeArray(
      arrow::ArrayData::Make(type, rowCount, {presence.bits, buffer}, presence.missing));
}

arrow::Result<std::shared_ptr<arrow::Array>> arrayOfTexts(const GroupColumn& column,
                                                          std::int64_t rowCount) {
  Presence presence;
  ARROW_RETURN_NOT_OK(presence.begin(rowCount));
  std::shared_ptr<arrow::Buffer> offsetBuffer;
  ARROW_ASSIGN_OR_RAISE(
      offsetBuffer,
      arrow::AllocateBuffer((rowCount + 1) * static_cast<std::int64_t>(sizeof(std::int32_t)),
                            columnPool()));
  auto* offsets = reinterpret_cast<std::int32_t*>(offsetBuffer->mutable_data());
  std::int64_t size = 0;
  forEachValue(column, [&](const unsigned char* bytes, std::int64_t row) {
    offsets[row] = static_cast<std::int32_t>(size);
    size += static_cast<std::int64_t>(textFromBytes(bytes).size());
    if (isNullText(bytes)) {
      presence.clear(row);
    }
  });
  if (size > INT32_MAX) {
    return arrow::Status::CapacityError("a text is longer than 2 GB");
  }
  offsets[rowCount] = static_cast<std::int32_t>(size);
  std::shared_ptr<arrow::Buffer> texts;
  ARROW_ASSIGN_OR_RAISE(texts, arrow::AllocateBuffer(size, columnPool()));
  forEachValue(column, [&](const unsigned char* bytes, std::int64_t row) {
    const std::string_view text = textFromBytes(bytes);
    text.copy(reinterpret_cast<char*>(texts->mutable_data()) + offsets[row], text.size());
  });
  return arrow::MakeArray(arrow::ArrayData::Make(
      arrow::utf8(), rowCount, {presence.bits, offsetBuffer, texts}, presence.missing));
}

// The values as they are, or a bit for each where they are booleans.
template <typename Value>
arrow::Result<std::shared_ptr<arrow::Buffer>> bufferOf(const TypedColumn<Value>& column,
                                                       std::int64_t rowCount) {
  if constexpr (!std::is_same_v<Value, bool>) {
    return column.values.owner;
  } else {
    ARROW_ASSIGN_OR_RAISE(auto bits, arrow::AllocateBitmap(rowCount, columnPool()));
    std::memset(bits->mutable_data(), 0, static_cast<std::size_t>(bits->size()));
    for (std::int64_t row = 0; row < rowCount; ++row) {
      arrow::bit_util::SetBitTo(bits->mutable_data(), row, column.values.values[row]);
    }
    return std::shared_ptr<arrow::Buffer>(std::move(bits));
  }
}

template <typename Value>
arrow::Result<std::shared_ptr<arrow::Array>> arrayOfTyped(
    const TypedColumn<Value>& column, std::int64_t rowCount,
    const std::shared_ptr<arrow::DataType>& type) {
  Presence presence;
  ARROW_RETURN_NOT_OK(presence.begin(rowCount));
  for (std::int64_t row = 0; row < rowCount; ++row) {
    if (column.isMissing(static_cast<std::size_t>(row))) {
      presence.clear(row);
    }
  }
  ARROW_ASSIGN_OR_RAISE(auto values, bufferOf(column, rowCount));
  return arrow::MakeArray(
      arrow::ArrayData::Make(type, rowCount, {presence.bits, values}, presence.missing));
}

arrow::Result<std::shared_ptr<arrow::Array>> arrayOf(const GroupColumn& column,
                                                     std::int64_t rowCount, const StoredType& type,
                                                     BadValues& bad) {
  if (isTyped(column, type)) {
    return withTypedColumn(
        column, static_cast<std::size_t>(rowCount), type, bad,
        [&](const auto& values) { return arrayOfTyped(values, rowCount, arrowTypeOf(type)); });
  }
  switch (column.type) {
    case MetaTypeColumn::number:
      return arrayOfValues<double>(column, rowCount, arrow::float64(), numberFromBytes,
                                   isNullNumber);
    case MetaTypeColumn::key:
      return arrayOfValues<std::uint32_t>(column, rowCount, arrow::uint32(), keyFromBytes,
                                          isNullKey);
    default:
      return arrayOfTexts(column, rowCount);
  }
}

class IpcWriter : public RowGroupFormat {
 public:
  explicit IpcWriter(bool isStream) : m_isStream(isStream) {}
  arrow::Status open(std::shared_ptr<ArrowOutputStream> stream, const OneRow& columns,
                     const std::vector<StoredType>& types) override {
    m_types = types;
    arrow::FieldVector fields;
    for (int i = 0; i < columns.sz(); ++i) {
      fields.push_back(arrow::field(columns.colName(i).toStdString(),
                                    arrowTypeOf(types[static_cast<std::size_t>(i)])));
    }
    m_schema = arrow::schema(std::move(fields));
    m_stream = stream;
    auto options = arrow::ipc::IpcWriteOptions::Defaults();
    options.use_threads = false;
    return (m_isStream ? arrow::ipc::MakeStreamWriter(m_stream.get(), m_schema, options)
                       : arrow::ipc::MakeFileWriter(m_stream.get(), m_schema, options))
        .Value(&m_writer);
  }

  arrow::Status encode(const RowGroup& group, std::size_t column,
                       std::unique_ptr<EncodedColumn>& encoded) const override {
    auto made = std::make_unique<EncodedArray>();
    const auto rowCount = static_cast<std::int64_t>(group.rowCount());
    ARROW_ASSIGN_OR_RAISE(
        made->array, arrayOf(group.columns()[column], rowCount, m_types[column], made->badValues));
    encoded = std::move(made);
    return arrow::Status::OK();
  }

  arrow::Status write(std::size_t rowCount,
                      std::vector<std::unique_ptr<EncodedColumn>> columns) override {
    arrow::ArrayVector arrays;
    for (const auto& column : columns) {
      arrays.push_back(static_cast<const EncodedArray&>(*column).array);
    }
    const auto rows = static_cast<std::int64_t>(rowCount);
    return m_writer->WriteRecordBatch(*arrow::RecordBatch::Make(m_schema, rows, std::move(arrays)));
  }

  arrow::Status close() override { return m_writer->Close(); }

 private:
  const bool m_isStream;
  std::vector<StoredType> m_types;
  std::shared_ptr<arrow::Schema> m_schema;
  std::shared_ptr<ArrowOutputStream> m_stream;
  std::shared_ptr<arrow::ipc::RecordBatchWriter> m_writer;
};

}  // namespace

std::unique_ptr<RowGroupFormat> makeIpcWriter(bool isStream) {
  return std::make_unique<IpcWriter>(isStream);
}

}  // namespace kelvarin
