#include "host/tables/arrow_formats/row_group_writer.h"

#include "host/contract/batch_collector.h"
#include "host/tables/arrow_formats/group_encoding.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

RowGroupWriter::RowGroupWriter(std::unique_ptr<RowGroupFormat> format, OutputFile& file,
                               const QString& path, TaskPool* pool)
    : m_path(path),
      m_pool(pool),
      m_stream(std::make_shared<ArrowOutputStream>(file)),
      m_format(std::move(format)) {}

RowGroupWriter::~RowGroupWriter() {
  m_stream->abandon();
}

Status<QString> RowGroupWriter::begin(const OneRow& columns) {
  m_types = typesOf(columns);
  m_group = std::make_unique<RowGroup>(m_types);
  return outcome(m_format->open(m_stream, columns));
}

std::unique_ptr<BatchEncoder> RowGroupWriter::makeEncoder() {
  return std::make_unique<GatheringEncoder>();
}

Status<QString> RowGroupWriter::write(EncodedBatch& batch) {
  return outcome(append(static_cast<const GatheredRows&>(batch)));
}

arrow::Status RowGroupWriter::append(const GatheredRows& rows) {
  for (std::size_t row = 0; row < rows.rowCount;) {
    row += m_group->append(rows, row);
    if (m_group->isFull()) {
      ARROW_RETURN_NOT_OK(endGroup());
    }
  }
  return arrow::Status::OK();
}

arrow::Status RowGroupWriter::endGroup() {
  ARROW_RETURN_NOT_OK(writeGroups(groupsAhead()));
  auto group = std::make_unique<RowGroup>(m_types);
  std::swap(group, m_group);
  m_encodings.push_back(std::make_unique<GroupEncoding>(std::move(group), *m_format, m_pool));
  return m_pool == nullptr ? writeGroups(0) : arrow::Status::OK();
}

// So many that no thread is idle while the last columns of one are encoded, and no more, since all
// of them are in memory.
std::size_t RowGroupWriter::groupsAhead() const {
  constexpr std::size_t kMaxGroupsAhead = 4;
  const auto threads = static_cast<std::size_t>(m_pool == nullptr ? 0 : m_pool->threadCount());
  return std::min(threads / (m_types.size() + 1), kMaxGroupsAhead);
}

arrow::Status RowGroupWriter::writeGroups(std::size_t groupsLeft) {
  while (m_encodings.size() > groupsLeft) {
    const auto encoding = std::move(m_encodings.front());
    m_encodings.pop_front();
    ARROW_RETURN_NOT_OK(encoding->writeTo(*m_format));
  }
  return arrow::Status::OK();
}

Status<QString> RowGroupWriter::finish() {
  arrow::Status status = m_group->rowCount() == 0 ? arrow::Status::OK() : endGroup();
  if (status.ok()) {
    status = writeGroups(0);
  }
  if (status.ok()) {
    status = m_format->close();
  }
  return outcome(status);
}

Status<QString> RowGroupWriter::outcome(const arrow::Status& status) const {
  if (status.ok()) {
    return Done{};
  }
  return Failure{m_stream->failure().isEmpty()
                     ? table_messages::cannotWrite(m_path, QString::fromStdString(status.message()))
                     : m_stream->failure()};
}

}  // namespace kelvarin
