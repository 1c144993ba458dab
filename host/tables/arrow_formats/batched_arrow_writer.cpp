#include "host/tables/arrow_formats/batched_arrow_writer.h"

#include "host/tables/files/messages.h"

namespace kelvarin {

BatchedArrowWriter::BatchedArrowWriter(std::unique_ptr<ArrowBatchWriter> writer, OutputFile& file,
                                       const QString& path)
    : m_path(path),
      m_stream(std::make_shared<ArrowOutputStream>(file)),
      m_writer(std::move(writer)) {}

BatchedArrowWriter::~BatchedArrowWriter() {
  m_stream->abandon();
}

Status<QString> BatchedArrowWriter::begin(const OneRow& columns) {
  m_collector = std::make_unique<RowCollector>(columns);
  return outcome(m_writer->open(m_stream, m_collector->schema()));
}

Status<QString> BatchedArrowWriter::writeRow(const OneRow& row) {
  arrow::Status status = m_collector->append(row);
  if (status.ok() && m_collector->isFull()) [[unlikely]] {
    status = writeCollected();
  }
  if (!status.ok()) [[unlikely]] {
    return outcome(status);
  }
  return Done{};
}

arrow::Status BatchedArrowWriter::writeCollected() {
  ARROW_ASSIGN_OR_RAISE(const auto batch, m_collector->take());
  return m_writer->write(*batch);
}

Status<QString> BatchedArrowWriter::finish() {
  arrow::Status status = m_collector->isEmpty() ? arrow::Status::OK() : writeCollected();
  if (status.ok()) {
    status = m_writer->close();
  }
  return outcome(status);
}

Status<QString> BatchedArrowWriter::outcome(const arrow::Status& status) const {
  if (status.ok()) {
    return Done{};
  }
  return Failure{m_stream->failure().isEmpty()
                     ? table_messages::cannotWrite(m_path, QString::fromStdString(status.message()))
                     : m_stream->failure()};
}

}  // namespace kelvarin
