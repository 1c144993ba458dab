#include "host/tables/arrow/arrow_batch_reader.h"

#include <QFile>

#include "arrow/array/array_base.h"
#include "host/tables/arrow/arrow_values.h"
#include "host/tables/messages.h"

namespace kelvarin {

ArrowBatchReader::ArrowBatchReader(const QString& path, std::unique_ptr<ArrowFile> file)
    : m_path(path), m_file(std::move(file)) {}

Result<TableColumns, QString> ArrowBatchReader::open() {
  QFile file(m_path);
  if (!file.open(QIODevice::ReadOnly)) {
    return Failure{table_messages::cannotRead(m_path, file.errorString())};
  }
  file.close();
  if (const arrow::Status status = m_file->open(QFile::encodeName(m_path).toStdString());
      !status.ok()) {
    return Failure{failureText(status)};
  }
  Result<TableColumns, QString> columns = columnsOf(*m_file->schema());
  if (columns) {
    m_columns = *columns;
  }
  return columns;
}

Result<TableColumns, QString> ArrowBatchReader::columnsOf(const arrow::Schema& schema) const {
  TableColumns columns;
  for (const auto& field : schema.fields()) {
    const QString name = QString::fromStdString(field->name());
    const auto type = columnTypeOf(*field->type());
    if (!type) {
      return Failure{table_messages::unsupportedType(
          m_path, name, QString::fromStdString(field->type()->ToString()))};
    }
    if (columns.names.contains(name)) {
      return Failure{table_messages::duplicateColumn(m_path, name)};
    }
    columns.names.append(name);
    columns.types.push_back(*type);
  }
  return columns;
}

Result<ReadOutcome, QString> ArrowBatchReader::next(RowBatch& batch) {
  const auto raw = m_file->nextBatch();
  if (!raw.ok()) {
    return Failure{failureText(raw.status())};
  }
  if (*raw == nullptr) {
    return ReadOutcome::end;
  }
  if (const auto status = convert(**raw, batch); !status) {
    return Failure{status.error()};
  }
  m_rowsGiven += (*raw)->num_rows();
  return ReadOutcome::rows;
}

// A file may be damaged or forged in any place: everything a value is reached through is checked
// before.
Status<QString> ArrowBatchReader::convert(const arrow::RecordBatch& raw, RowBatch& batch) const {
  for (std::size_t i = 0; i < batch.columnCount(); ++i) {
    const arrow::Array& array = *raw.column(static_cast<int>(i));
    const QString name = m_columns.names[static_cast<qsizetype>(i)];
    if (const arrow::Status status = array.ValidateFull(); !status.ok()) {
      const QString place = table_messages::inColumn(placeOfRow(m_rowsGiven), name);
      return Failure{table_messages::damaged(
          m_path, table_messages::atPlace(place, QString::fromStdString(status.message())))};
    }
    if (const auto bad = convertArray(array, batch.column(i))) {
      const QString place = table_messages::inColumn(placeOfRow(m_rowsGiven + bad->row), name);
      return Failure{table_messages::atPlace(place, bad->reason)};
    }
  }
  batch.setRowCount(raw.num_rows());
  return Done{};
}

QString ArrowBatchReader::failureText(const arrow::Status& status) const {
  return table_messages::damaged(m_path, QString::fromStdString(status.message()));
}

float ArrowBatchReader::fractionDone() const {
  const long long rows = m_file->rowCount();
  return rows <= 0 ? -1.0f : static_cast<float>(m_rowsGiven) / static_cast<float>(rows);
}

QString ArrowBatchReader::placeOfRow(long long row) const {
  return table_messages::atRow(m_path, row + 1);
}

}  // namespace kelvarin
