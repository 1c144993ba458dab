// The Arrow side of reading: files with a table of their record batches at the end, and streams,
// which are read from the beginning on. So is a file that comes through a pipe.
#include <algorithm>
#include <cstdint>
#include <numeric>
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
#include "host/tables/arrow_formats/ipc_footer.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

constexpr std::int64_t kRowsInUnit = 16 * 1024;

class IpcGroup : public ArrowFileGroup {
 public:
  // `indexes` say which column of the batch each chosen one is.
  IpcGroup(std::shared_ptr<arrow::RecordBatch> batch,
           std::shared_ptr<const std::vector<int>> indexes)
      : m_batch(std::move(batch)),
        m_indexes(std::move(indexes)),
        m_rowsDone(m_indexes->size(), 0) {}

  std::int64_t rowCount() const override { return m_batch->num_rows(); }
  arrow::Result<std::shared_ptr<arrow::Array>> next(int column, std::int64_t rowCount) override {
    const auto index = static_cast<std::size_t>(column);
    const auto& array = m_batch->column((*m_indexes)[index]);
    std::int64_t& rowsDone = m_rowsDone[index];
    if (rowsDone == 0) {
      ARROW_RETURN_NOT_OK(array->ValidateFull());
    }
    rowsDone += rowCount;
    return array->Slice(rowsDone - rowCount, rowCount);
  }

 private:
  std::shared_ptr<arrow::RecordBatch> m_batch;
  std::shared_ptr<const std::vector<int>> m_indexes;
  std::vector<std::int64_t> m_rowsDone;  // of each chosen column
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
    m_options.use_threads = false;
    m_options.memory_pool = columnPool();
    m_options.ensure_alignment = arrow::ipc::Alignment::kDataTypeSpecificAlignment;
    if (form == IpcForm::file && input->canReadAgain()) {
      ARROW_RETURN_NOT_OK(openFile(*input));
      m_schema = m_file->schema();
      return arrow::Status::OK();
    }
    m_isFileInPipe = form == IpcForm::file;
    ARROW_RETURN_NOT_OK(openStream(input, m_isFileInPipe ? std::string() : head));
    m_schema = m_stream->schema();
    return arrow::Status::OK();
  }
  std::shared_ptr<arrow::Schema> schema() const override { return m_schema; }
  // A reader of the library takes the fields when it is opened, and then it reads the schema again.
  arrow::Status choose(const std::vector<int>& fields) override {
    std::vector<int> sorted = fields;
    std::ranges::sort(sorted);
    std::vector<int> indexes;
    indexes.reserve(fields.size());
    for (const int field : fields) {
      indexes.push_back(static_cast<int>(std::ranges::lower_bound(sorted, field) - sorted.begin()));
    }
    m_indexes = std::make_shared<const std::vector<int>>(std::move(indexes));
    const bool areAll = static_cast<int>(fields.size()) == m_schema->num_fields();
    std::string read = m_input == nullptr ? std::string() : m_input->takeRead();
    if (areAll) {
      return arrow::Status::OK();
    }
    m_options.included_fields = std::move(sorted);
    return m_stream == nullptr
               ? arrow::ipc::RecordBatchFileReader::Open(m_randomAccess, m_options).Value(&m_file)
               : openStream(m_input->file(), std::move(read));
  }
  std::int64_t rowCount() const override { return m_rowCount; }
  std::int64_t rowsInUnit() const override { return kRowsInUnit; }
  float fractionRead() const override {
    return m_input == nullptr ? -1.0f : m_input->fractionRead();
  }
  std::int64_t skipGroups(std::int64_t rowCount) override {
    std::int64_t skipped = 0;
    while (static_cast<std::size_t>(m_nextBatch) < m_rowsOfBatches.size()) {
      const std::int64_t rows = m_rowsOfBatches[static_cast<std::size_t>(m_nextBatch)];
      if (rows > rowCount - skipped) {
        break;
      }
      skipped += rows;
      ++m_nextBatch;
    }
    return skipped;
  }
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
    return std::make_unique<IpcGroup>(std::move(batch), m_indexes);
  }
  QStringList warnings(const QString& source) const override {
    if (m_endsWithoutMark) {
      return {table_messages::streamWithoutEnd(source)};
    }
    return m_bytesBehind > 0 ? QStringList{table_messages::bytesBehindStream(source, m_bytesBehind)}
                             : QStringList();
  }

 private:
  arrow::Status openFile(const InputFile& input) {
    const std::string path = QFile::encodeName(input.path()).toStdString();
    ARROW_ASSIGN_OR_RAISE(m_randomAccess, arrow::io::ReadableFile::Open(path));
    ARROW_ASSIGN_OR_RAISE(m_file,
                          arrow::ipc::RecordBatchFileReader::Open(m_randomAccess, m_options));
    const auto rows = rowsOfRecordBatches(*m_randomAccess);
    if (!rows || static_cast<int>(rows->size()) != m_file->num_record_batches()) {
      return m_file->CountRows().Value(&m_rowCount);
    }
    m_rowsOfBatches = *rows;
    m_rowCount = std::accumulate(rows->begin(), rows->end(), std::int64_t{0});
    return arrow::Status::OK();
  }

  arrow::Status openStream(const std::shared_ptr<const InputFile>& input, std::string head) {
    m_input = std::make_shared<ArrowInputStream>(input, std::move(head));
    return arrow::ipc::RecordBatchStreamReader::Open(m_input, m_options).Value(&m_stream);
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

  arrow::ipc::IpcReadOptions m_options = arrow::ipc::IpcReadOptions::Defaults();
  std::shared_ptr<arrow::Schema> m_schema;
  std::shared_ptr<const std::vector<int>> m_indexes;
  std::shared_ptr<arrow::io::RandomAccessFile> m_randomAccess;
  // One of both.
  std::shared_ptr<arrow::ipc::RecordBatchFileReader> m_file;
  std::shared_ptr<arrow::ipc::RecordBatchStreamReader> m_stream;
  std::shared_ptr<ArrowInputStream> m_input;  // of the stream
  std::int64_t m_rowCount = -1;
  std::vector<std::int64_t> m_rowsOfBatches;  // of a file
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
