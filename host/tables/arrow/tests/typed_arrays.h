// Arrays, tables and files of the Arrow library, as tests type them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "arrow/io/file.h"
#include "arrow/ipc/reader.h"
#include "arrow/ipc/writer.h"
#include "arrow/table.h"
#include "parquet/arrow/reader.h"
#include "parquet/arrow/writer.h"

namespace kelvarin::testing {

enum class Format { parquet, ipc, stream };

// An array of the builder's type; an absent value is a null.
template <typename Builder, typename Value>
std::shared_ptr<arrow::Array> arrayBy(Builder&& builder,
                                      const std::vector<std::optional<Value>>& values) {
  for (const auto& value : values) {
    const arrow::Status status = value ? builder.Append(*value) : builder.AppendNull();
    EXPECT_TRUE(status.ok()) << status.ToString();
  }
  return *builder.Finish();
}

template <typename Builder, typename Value>
std::shared_ptr<arrow::Array> array(const std::vector<std::optional<Value>>& values) {
  return arrayBy<Builder, Value>(Builder(arrow::default_memory_pool()), values);
}

// How the library writes a file.
struct FileForm {
  std::int64_t rowsInGroup = 1 << 20;
  std::int64_t dictionaryBytes = 1 << 20;
};

inline void writeFile(const std::string& path, Format format, const arrow::Table& table,
                      const FileForm& form = {}) {
  auto stream = *arrow::io::FileOutputStream::Open(path);
  if (format == Format::parquet) {
    const auto properties = parquet::WriterProperties::Builder()
                                .dictionary_pagesize_limit(form.dictionaryBytes)
                                ->data_pagesize(1000)
                                ->build();
    EXPECT_TRUE(parquet::arrow::WriteTable(table, arrow::default_memory_pool(), stream,
                                           form.rowsInGroup, properties)
                    .ok());
  } else {
    auto writer = *(format == Format::ipc ? arrow::ipc::MakeFileWriter(stream, table.schema())
                                          : arrow::ipc::MakeStreamWriter(stream, table.schema()));
    EXPECT_TRUE(writer->WriteTable(table, form.rowsInGroup).ok());
    EXPECT_TRUE(writer->Close().ok());
  }
  EXPECT_TRUE(stream->Close().ok());
}

// A table of one chunk, as the library reads it.
inline std::shared_ptr<arrow::Table> tableOfFile(const std::string& path, Format format) {
  auto file = *arrow::io::ReadableFile::Open(path);
  std::shared_ptr<arrow::Table> table;
  if (format == Format::parquet) {
    parquet::arrow::FileReaderBuilder builder;
    EXPECT_TRUE(builder.Open(file).ok());
    table = *(*builder.Build())->ReadTable();
  } else if (format == Format::ipc) {
    table = *(*arrow::ipc::RecordBatchFileReader::Open(file))->ToTable();
  } else {
    table = *(*arrow::ipc::RecordBatchStreamReader::Open(file))->ToTable();
  }
  EXPECT_TRUE(table->ValidateFull().ok());
  return *table->CombineChunks();
}

}  // namespace kelvarin::testing
