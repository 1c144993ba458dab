// Tables of the Arrow library as streams of the interface, and back; the library checks every array
// that comes out.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "arrow/array/array_base.h"
#include "arrow/c/bridge.h"
#include "arrow/json/from_string.h"
#include "arrow/pretty_print.h"
#include "arrow/scalar.h"
#include "arrow/table.h"
#include "include/kelvarin/kelvarin.h"

namespace kelvarin::testing {

// {"a", arrow::int64(), "[1, null]"}
struct TypedColumn {
  std::string name;
  std::shared_ptr<arrow::DataType> type;
  std::string values;
};

inline std::shared_ptr<arrow::RecordBatch> batchOf(const std::vector<TypedColumn>& columns) {
  arrow::FieldVector fields;
  arrow::ArrayVector arrays;
  for (const TypedColumn& column : columns) {
    fields.push_back(arrow::field(column.name, column.type));
    const auto array = arrow::json::ArrayFromJSONString(column.type, column.values);
    EXPECT_TRUE(array.ok()) << array.status().ToString();
    arrays.push_back(*array);
  }
  const std::int64_t rows = arrays.empty() ? 0 : arrays.front()->length();
  return arrow::RecordBatch::Make(arrow::schema(fields), rows, arrays);
}

inline ArrowArrayStream streamOf(const arrow::RecordBatchVector& batches) {
  ArrowArrayStream stream;
  const auto reader = *arrow::RecordBatchReader::Make(batches, batches.front()->schema());
  EXPECT_TRUE(arrow::ExportRecordBatchReader(reader, &stream).ok());
  return stream;
}

inline ArrowArrayStream streamOf(const std::vector<TypedColumn>& columns) {
  return streamOf(arrow::RecordBatchVector{batchOf(columns)});
}

// What comes out of a stream, in one piece; where it fails, the rows before, and why.
struct Pulled {
  std::shared_ptr<arrow::Table> table;
  std::string failure;
  std::size_t batches = 0;

  // "a=[1,null] t=["x",""]"
  std::string text() const {
    std::string all = failure;
    for (int i = 0; table != nullptr && i < table->num_columns(); ++i) {
      arrow::PrettyPrintOptions options = arrow::PrettyPrintOptions::Defaults();
      options.skip_new_lines = true;
      options.indent = 0;
      options.window = 1000;
      std::string values;
      EXPECT_TRUE(arrow::PrettyPrint(*table->column(i)->chunk(0), options, &values).ok());
      std::erase(values, ' ');
      all += (all.empty() ? "" : " ") + table->field(i)->name() + "=" + values;
    }
    return all;
  }
};

inline Pulled pulled(ArrowArrayStream& stream) {
  Pulled result;
  const auto reader = arrow::ImportRecordBatchReader(&stream);
  if (!reader.ok()) {
    result.failure = reader.status().message();
    return result;
  }
  arrow::RecordBatchVector batches;
  for (;;) {
    std::shared_ptr<arrow::RecordBatch> batch;
    const arrow::Status status = (*reader)->ReadNext(&batch);
    if (!status.ok()) {
      result.failure = status.message();
    }
    if (batch == nullptr) {
      break;
    }
    EXPECT_TRUE(batch->ValidateFull().ok()) << batch->ValidateFull().ToString();
    batches.push_back(batch);
  }
  result.batches = batches.size();
  const auto table = arrow::Table::FromRecordBatches((*reader)->schema(), batches);
  result.table = *(*table)->CombineChunks();
  if (result.table->num_rows() == 0) {
    result.table = *arrow::Table::MakeEmpty((*reader)->schema());
  }
  return result;
}

// A call that must succeed, or the message of its error.
class Call {
 public:
  ~Call() { kelvarin_error_free(m_error); }
  kelvarin_error** operator&() {
    kelvarin_error_free(m_error);
    m_error = nullptr;
    return &m_error;
  }
  std::string message() const { return kelvarin_error_message(m_error); }
  std::string json() const { return kelvarin_error_json(m_error); }
  const kelvarin_error* get() const { return m_error; }

 private:
  kelvarin_error* m_error = nullptr;
};

// The error of a stream that must fail.
inline void pullToFailure(ArrowArrayStream& stream, kelvarin_error** error) {
  ArrowArray batch{};
  while (stream.get_next(&stream, &batch) == 0 && batch.release != nullptr) {
    batch.release(&batch);
  }
  EXPECT_NE(kelvarin_stream_error(&stream, error), KELVARIN_OK);
}

// The column and the row of an error, "price 3"; without them " -1".
inline std::string columnAndRowOf(const Call& error) {
  return std::string(kelvarin_error_column(error.get())) + ' ' +
         std::to_string(kelvarin_error_row(error.get()));
}

}  // namespace kelvarin::testing
