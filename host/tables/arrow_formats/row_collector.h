// Gathers rows into a batch of the Arrow library: numbers as float64, keys as uint32, texts as
// utf8, nulls as nulls.
#pragma once

#include <memory>
#include <vector>

#include "arrow/array/builder_binary.h"
#include "arrow/array/builder_primitive.h"
#include "arrow/record_batch.h"
#include "host/contract/one_row.h"

namespace kelvarin {

class RowCollector {
 public:
  // Columns as those of `columns`.
  explicit RowCollector(const OneRow& columns);

  const std::shared_ptr<arrow::Schema>& schema() const { return m_schema; }
  arrow::Status append(const OneRow& row);
  // The rows are as many as a batch should have.
  bool isFull() const { return m_rowCount >= kMaxRows || m_textBytes >= kMaxTextBytes; }
  bool isEmpty() const { return m_rowCount == 0; }
  // Returns the rows and starts anew.
  arrow::Result<std::shared_ptr<arrow::RecordBatch>> take();

 private:
  static constexpr std::int64_t kMaxRows = 128 * 1024;
  static constexpr std::int64_t kMaxTextBytes = 64 << 20;

  arrow::Status appendText(const unsigned char* bytes, arrow::ArrayBuilder& builder);

  std::shared_ptr<arrow::Schema> m_schema;
  std::vector<MetaTypeColumn> m_types;
  std::vector<std::unique_ptr<arrow::ArrayBuilder>> m_builders;
  std::int64_t m_rowCount = 0;
  std::int64_t m_textBytes = 0;
};

}  // namespace kelvarin
