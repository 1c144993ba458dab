// The Arrow side of reading: files with a table of their record batches at the end, and streams,
// which are read from the beginning on. So is a file that comes through a pipe.
#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include <QFile>

#include "arrow/io/file.h"
#include "arrow/ipc/reader.h"
#include "arrow/record_batch.h"
#include "host/tables/arrow/messages.h"
#include "host/tables/arrow_formats/arrow_file.h"
#include "host/tables/arrow_formats/arrow_input_stream.h"
#include "host/tables/arrow_formats/column_memory.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

constexpr std::int64_t kRowsInUnit = 16 * 1024;

class IpcGroup : public ArrowFileGroup {
 public:
  explicit IpcGroup(std::shared_ptr<arrow::RecordBatch> batch)
      : m_batch(std::move(batch)),
        m_rowsDone(static_cast<std::size_t>(m_batch->num_columns()), 0) {}

  std::int64_t rowCount() const override { return m_batch->num_rows(); }
  arrow::Result<std::shared_ptr<arrow::Array>> next(int column, std::int64_t rowCount) override {
    const auto& array = m_batch->column(column);
    std::int64_t& rowsDone = m_rowsDone[static_cast<std::size_t>(column)];
    if (rowsDone == 0) {
      ARROW_RETURN_NOT_OK(array->ValidateFull());
    }
    rowsDone += rowCount;
    return array->Slice(rowsDone - rowCount, rowCount);
  }

 private:
  std::shared_ptr<arrow::RecordBatch> m_batch;
  std::vector<std::int64_t> m_rowsDone;  // of each column
};

enum class IpcForm { empty, file, stream, feather1, unknown };

constexpr std::string_view kFileMagic("ARROW1\0\0", 8);

// By the first eight bytes. A stream begins with a mark; those of old writers with the size of
// their schema, which is below 16 MiB, so that its fourth byte is no character of a text.
IpcForm formOf(std::string_view head) {
  if (head.empty()) {
    return IpcForm::empty;
  }
  if (head == kFileMagic) {
    return IpcForm::file;
  }
  if (head.starts_with("FEA1")) {
    return IpcForm::feather1;
  }
  const bool isStream =
      head.starts_with("\xFF\xFF\xFF\xFF") || (head.size() == 8 && head[3] == '\0');
  return isStream ? IpcForm::stream : IpcForm::unknown;
}

arrow::Status invalid(const QString& text) {
  return arrow::Status::Invalid(text.toStdString());
}

class IpcFile : public ArrowFile {
 public:
  arrow::Status open(const std::shared_ptr<const InputFile>& input) override {
    std::string head(kFileMagic.size(), '\0');
    const auto got = input->readNext(head.data(), head.size(), head.size());
    if (!got) {
      return invalid(got.error());
    }
    head.resize(got->size);
    const IpcForm form = formOf(head);
    switch (form) {
      case IpcForm::empty:
        return invalid(table_messages::nothingInFile());
      case IpcForm::feather1:
        return invalid(table_messages::isFirstFeather());
      case IpcForm::unknown:
        return invalid(table_messages::neitherFileNorStream());
      default:
        break;
    }
    auto options = arrow::ipc::IpcReadOptions::Defaults();
    options.use_threads = false;
    options.memory_pool = columnPool();
    options.ensure_alignment = arrow::ipc::Alignment::kDataTypeSpecificAlignment;
    if (form == IpcForm::file && input->canReadAgain()) {
      return openFile(*input, options);
    }
    m_isFileInPipe = form == IpcForm::file;
    m_input = std::make_shared<ArrowInputStream>(input, m_isFileInPipe ? std::string() : head);
    return arrow::ipc::RecordBatchStreamReader::Open(m_input, options).Value(&m_stream);
  }
  std::shared_ptr<arrow::Schema> schema() const override {
    return m_stream == nullptr ? m_file->schema() : m_stream->schema();
  }
  std::int64_t rowCount() const override { return m_rowCount; }
  std::int64_t rowsInUnit() const override { return kRowsInUnit; }
  float fractionRead() const override {
    return m_input == nullptr ? -1.0f : m_input->fractionRead();
  }
  // How many rows a batch has stands with the batch itself.
  std::int64_t skipGroups(std::int64_t) override { return 0; }
  arrow::Result<std::unique_ptr<ArrowFileGroup>> nextGroup() override {
    if (m_isAtEnd) {
      return nullptr;
    }
    std::shared_ptr<arrow::RecordBatch> batch;
    if (const arrow::Status status = readBatch(batch); !status.ok()) {
      return invalid(table_messages::atLocation(table_messages::recordBatch(m_nextBatch + 1),
                                                QString::fromStdString(status.message())));
    }
    if (batch == nullptr) {
      m_isAtEnd = true;
      ARROW_RETURN_NOT_OK(m_stream == nullptr ? arrow::Status::OK() : endStream());
      return nullptr;
    }
    ++m_nextBatch;
    return std::make_unique<IpcGroup>(std::move(batch));
  }
  QStringList warnings(const QString& source) const override {
    if (m_endsWithoutMark) {
      return {table_messages::streamWithoutEnd(source)};
    }
    return m_bytesBehind > 0 ? QStringList{table_messages::bytesBehindStream(source, m_bytesBehind)}
                             : QStringList();
  }

 private:
  arrow::Status openFile(const InputFile& input, const arrow::ipc::IpcReadOptions& options) {
    const std::string path = QFile::encodeName(input.path()).toStdString();
    ARROW_ASSIGN_OR_RAISE(auto file, arrow::io::ReadableFile::Open(path));
    ARROW_ASSIGN_OR_RAISE(m_file, arrow::ipc::RecordBatchFileReader::Open(file, options));
    return m_file->CountRows().Value(&m_rowCount);
  }

  // Null at the end.
  arrow::Status readBatch(std::shared_ptr<arrow::RecordBatch>& batch) {
    if (m_stream != nullptr) {
      return m_stream->ReadNext(&batch);
    }
    return m_nextBatch == m_file->num_record_batches()
               ? arrow::Status::OK()
               : m_file->ReadRecordBatch(m_nextBatch).Value(&batch);
  }

  arrow::Status endStream() {
    if (m_isFileInPipe) {
      return m_input->readToTheEnd();
    }
    m_endsWithoutMark = m_input->isExhausted();
    m_bytesBehind = std::max<std::int64_t>(m_input->bytesLeft(), 0);
    return arrow::Status::OK();
  }

  // One of both.
  std::shared_ptr<arrow::ipc::RecordBatchFileReader> m_file;
  std::shared_ptr<arrow::ipc::RecordBatchStreamReader> m_stream;
  std::shared_ptr<ArrowInputStream> m_input;  // of the stream
  std::int64_t m_rowCount = -1;
  int m_nextBatch = 0;
  bool m_isFileInPipe = false;
  bool m_isAtEnd = false;
  bool m_endsWithoutMark = false;
  std::int64_t m_bytesBehind = 0;  // the end of the stream
};

}  // namespace

std::unique_ptr<ArrowFile> makeIpcFile() {
  return std::make_unique<IpcFile>();
}

}  // namespace kelvarin
