#include "host/tables/arrow_formats/row_group_writer.h"

#include "host/contract/batch_collector.h"
#include "host/tables/arrow/value_messages.h"
#include "host/tables/arrow_formats/group_encoding.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

RowGroupWriter::RowGroupWriter(std::unique_ptr<RowGroupFormat> format, OutputFile& file,
                               const QString& path, StoredColumns stored, TaskPool* pool)
    : m_path(path),
      m_pool(pool),
      m_stream(std::make_shared<ArrowOutputStream>(file)),
      m_format(std::move(format)),
      m_stored(std::move(stored)),
      m_badValues(m_stored.types.size()) {}

RowGroupWriter::~RowGroupWriter() {
  m_stream->abandon();
}

Status<QString> RowGroupWriter::begin(const OneRow& columns) {
  m_names = columns.getColNamesDeep();
  m_types = typesOf(columns);
  m_group = std::make_unique<RowGroup>(m_types);
  return outcome(m_format->open(m_stream, columns, m_stored.types));
}

Status<QString> RowGroupWriter::write(std::unique_ptr<EncodedBatch> rows) {
  return outcome(append(static_cast<const GatheredRows&>(*rows)));
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
    ARROW_RETURN_NOT_OK(writeGroup(*encoding));
  }
  return arrow::Status::OK();
}

arrow::Status RowGroupWriter::writeGroup(GroupEncoding& encoding) {
  std::vector<std::unique_ptr<EncodedColumn>> columns;
  ARROW_RETURN_NOT_OK(encoding.takeColumns(columns));
  ARROW_RETURN_NOT_OK(judge(columns));
  m_rowsWritten += static_cast<long long>(encoding.rowCount());
  return m_format->write(encoding.rowCount(), std::move(columns));
}

arrow::Status RowGroupWriter::judge(const std::vector<std::unique_ptr<EncodedColumn>>& columns) {
  const EncodedColumn* first = nullptr;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const BadValues& bad = columns[i]->badValues;
    if (bad.count == 0) {
      continue;
    }
    m_badValues[i].add({bad.count, m_rowsWritten + static_cast<long long>(bad.firstRow)});
    if (first == nullptr || bad.firstRow < first->badValues.firstRow) {
      first = columns[i].get();
      m_fault = m_stored.areBadValuesNull ? QString() : notStored(i, bad);
    }
  }
  return m_fault.isEmpty() ? arrow::Status::OK() : arrow::Status::Invalid("a value");
}

QString RowGroupWriter::notStored(std::size_t column, const BadValues& bad) const {
  const StoredType& type = m_stored.types[column];
  const QString location =
      table_messages::inColumn(locationOf(m_rowsWritten + static_cast<long long>(bad.firstRow)),
                               m_names[static_cast<qsizetype>(column)]);
  const QString value = QString::fromUtf8(bad.firstText);
  return type.kind == StoredType::Kind::date || type.kind == StoredType::Kind::timestamp
             ? table_messages::textNotStored(location, value, type.name(), type.example())
             : table_messages::valueNotStored(location, value, type.name());
}

// Rows are counted from 1, as in files.
QString RowGroupWriter::locationOf(long long row) const {
  return table_messages::atRow(table_messages::fileTarget(m_path), row + 1);
}

QStringList RowGroupWriter::warnings() const {
  QStringList warnings;
  for (std::size_t i = 0; i < m_badValues.size(); ++i) {
    if (const RowCount& bad = m_badValues[i]; bad.count > 0) {
      warnings += table_messages::writtenAsNull(locationOf(bad.firstRow),
                                                m_names[static_cast<qsizetype>(i)], bad.count);
    }
  }
  return warnings;
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
  if (!m_fault.isEmpty()) {
    return Failure{m_fault};
  }
  return Failure{m_stream->failure().isEmpty()
                     ? table_messages::cannotWrite(m_path, QString::fromStdString(status.message()))
                     : m_stream->failure()};
}

}  // namespace kelvarin
