#include "host/tables/arrow_formats/row_collector.h"

#include "arrow/builder.h"
#include "arrow/type.h"

namespace kelvarin {

namespace {

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

arrow::Status appendNumber(double number, arrow::ArrayBuilder& builder) {
  auto& numbers = static_cast<arrow::DoubleBuilder&>(builder);
  return isNullNumber(number) ? numbers.AppendNull() : numbers.Append(number);
}

arrow::Status appendKey(std::uint32_t key, arrow::ArrayBuilder& builder) {
  auto& keys = static_cast<arrow::UInt32Builder&>(builder);
  return isNullKey(key) ? keys.AppendNull() : keys.Append(key);
}

}  // namespace

RowCollector::RowCollector(const OneRow& columns) {
  arrow::FieldVector fields;
  for (int i = 0; i < columns.sz(); ++i) {
    m_types.push_back(columns.getMetaType(i));
    const auto type = arrowTypeOf(m_types.back());
    fields.push_back(arrow::field(columns.colName(i).toStdString(), type));
    switch (m_types.back()) {
      case MetaTypeColumn::number:
        m_builders.push_back(std::make_unique<arrow::DoubleBuilder>());
        break;
      case MetaTypeColumn::key:
        m_builders.push_back(std::make_unique<arrow::UInt32Builder>());
        break;
      default:
        m_builders.push_back(std::make_unique<arrow::StringBuilder>());
    }
  }
  m_schema = arrow::schema(std::move(fields));
}

arrow::Status RowCollector::append(const OneRow& row) {
  unsigned char* const* values = row.getAllColForRead();
  for (std::size_t i = 0; i < m_types.size(); ++i) {
    switch (m_types[i]) {
      case MetaTypeColumn::number:
        ARROW_RETURN_NOT_OK(appendNumber(numberFromBytes(values[i]), *m_builders[i]));
        break;
      case MetaTypeColumn::key:
        ARROW_RETURN_NOT_OK(appendKey(keyFromBytes(values[i]), *m_builders[i]));
        break;
      default:
        ARROW_RETURN_NOT_OK(appendText(values[i], *m_builders[i]));
    }
  }
  ++m_rowCount;
  return arrow::Status::OK();
}

arrow::Status RowCollector::appendText(const unsigned char* bytes, arrow::ArrayBuilder& builder) {
  auto& texts = static_cast<arrow::StringBuilder&>(builder);
  if (isNullText(bytes)) {
    return texts.AppendNull();
  }
  const std::string_view text = textFromBytes(bytes);
  m_textBytes += static_cast<std::int64_t>(text.size());
  return texts.Append(text);
}

arrow::Result<std::shared_ptr<arrow::RecordBatch>> RowCollector::take() {
  arrow::ArrayVector columns;
  for (const auto& builder : m_builders) {
    ARROW_ASSIGN_OR_RAISE(auto column, builder->Finish());
    columns.push_back(std::move(column));
  }
  const std::int64_t rowCount = m_rowCount;
  m_rowCount = 0;
  m_textBytes = 0;
  return arrow::RecordBatch::Make(m_schema, rowCount, std::move(columns));
}

}  // namespace kelvarin
