// The Arrow side of writing: one record batch a row group; numbers as float64, keys as uint32,
// texts as utf8.
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

arrow::Result<std::shared_ptr<arrow::Array>> arrayOf(const GroupColumn& column,
                                                     std::int64_t rowCount) {
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
  arrow::Status open(std::shared_ptr<ArrowOutputStream> stream, const OneRow& columns) override {
    arrow::FieldVector fields;
    for (int i = 0; i < columns.sz(); ++i) {
      fields.push_back(
          arrow::field(columns.colName(i).toStdString(), arrowTypeOf(columns.getMetaType(i))));
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
    ARROW_ASSIGN_OR_RAISE(made->array, arrayOf(group.columns()[column], rowCount));
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
  std::shared_ptr<arrow::Schema> m_schema;
  std::shared_ptr<ArrowOutputStream> m_stream;
  std::shared_ptr<arrow::ipc::RecordBatchWriter> m_writer;
};

}  // namespace

std::unique_ptr<RowGroupFormat> makeIpcWriter(bool isStream) {
  return std::make_unique<IpcWriter>(isStream);
}

}  // namespace kelvarin
