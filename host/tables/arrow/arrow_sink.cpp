#include "host/tables/arrow/arrow_sink.h"

#include "host/tables/messages.h"

namespace kelvarin {

void ArrowSink::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  out << L"/>\n";
}

Status<QString> ArrowSink::begin(const OneRow& columns) {
  m_stream = std::make_shared<ArrowOutputStream>(output());
  m_collector = std::make_unique<RowCollector>(columns);
  m_writer = makeWriter();
  return outcome(m_writer->open(m_stream, m_collector->schema()));
}

Status<QString> ArrowSink::writeRow(const OneRow& row) {
  arrow::Status status = m_collector->append(row);
  if (status.ok() && m_collector->isFull()) [[unlikely]] {
    status = writeCollected();
  }
  if (!status.ok()) [[unlikely]] {
    return outcome(status);
  }
  return Done{};
}

arrow::Status ArrowSink::writeCollected() {
  ARROW_ASSIGN_OR_RAISE(const auto batch, m_collector->take());
  return m_writer->write(*batch);
}

Status<QString> ArrowSink::finish() {
  arrow::Status status = m_collector->isEmpty() ? arrow::Status::OK() : writeCollected();
  if (status.ok()) {
    status = m_writer->close();
  }
  return outcome(status);
}

void ArrowSink::release() {
  if (m_stream) {
    m_stream->abandon();
  }
  m_writer.reset();
  m_collector.reset();
  m_stream.reset();
}

Status<QString> ArrowSink::outcome(const arrow::Status& status) const {
  if (status.ok()) {
    return Done{};
  }
  return Failure{
      m_stream->failure().isEmpty()
          ? table_messages::cannotWrite(expandedFile(), QString::fromStdString(status.message()))
          : m_stream->failure()};
}

}  // namespace kelvarin
