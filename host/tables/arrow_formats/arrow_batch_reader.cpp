#include "host/tables/arrow_formats/arrow_batch_reader.h"

#include <algorithm>

#include <QFile>
#include <QMap>
#include <QSet>

#include "arrow/array/array_base.h"
#include "host/tables/arrow_formats/arrow_texts.h"
#include "host/tables/arrow_formats/arrow_values.h"
#include "host/tables/arrow_formats/messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

QChar letterOf(MetaTypeColumn type) {
  return QChar::fromLatin1(static_cast<char>(type));
}

}  // namespace

ArrowBatchReader::ArrowBatchReader(const QString& path, std::unique_ptr<ArrowFile> file,
                                   ColumnRules rules)
    : m_path(path), m_file(std::move(file)), m_rules(std::move(rules)) {}

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
  const arrow::Schema& schema = *m_file->schema();
  if (const auto status = settleColumns(schema); !status) {
    return Failure{status.error()};
  }
  if (const auto status = takeDeclaredTypes(schema); !status) {
    return Failure{status.error()};
  }
  noteTimestamps(schema);
  return m_columns;
}

Status<QString> ArrowBatchReader::settleColumns(const arrow::Schema& schema) {
  QSet<QString> known;
  for (const auto& field : schema.fields()) {
    const QString name = QString::fromStdString(field->name());
    const std::vector<MetaTypeColumn> types = columnTypesOf(*field->type());
    if (types.empty()) {
      return Failure{table_messages::unsupportedType(
          m_path, name, QString::fromStdString(field->type()->ToString()))};
    }
    if (known.contains(name)) {
      return Failure{table_messages::duplicateColumn(m_path, name)};
    }
    known.insert(name);
    m_columns.names.append(name);
    m_columns.types.push_back(types.front());
  }
  m_tallies.assign(m_columns.types.size(), ColumnTally{m_rules.areBadValuesNull, 0, {}, {}});
  return Done{};
}

Status<QString> ArrowBatchReader::takeDeclaredTypes(const arrow::Schema& schema) {
  const QHash<QString, qsizetype> positions = positionsOf(m_columns.names);
  for (const DeclaredColumn& declared : m_rules.declared) {
    const qsizetype index = positions.value(declared.name, -1);
    if (index < 0) {
      return Failure{
          table_messages::declaredColumnAbsent(m_path, declared.name, shownNames(m_columns.names))};
    }
    const arrow::DataType& type = *schema.field(static_cast<int>(index))->type();
    const std::vector<MetaTypeColumn> types = columnTypesOf(type);
    if (std::find(types.begin(), types.end(), declared.type) == types.end()) {
      QStringList possible;
      for (const MetaTypeColumn possibleType : types) {
        possible += letterOf(possibleType);
      }
      return Failure{table_messages::cannotBeDeclared(
          m_path, declared.name, QString::fromStdString(type.ToString()), letterOf(declared.type),
          possible.join(QStringLiteral(" or ")))};
    }
    m_columns.types[static_cast<std::size_t>(index)] = declared.type;
  }
  return Done{};
}

// One line for each form, however many columns have it.
void ArrowBatchReader::noteTimestamps(const arrow::Schema& schema) {
  QMap<QString, QVector<QString>> columnsOfFormat;
  QHash<QString, TimestampForm> forms;
  for (int i = 0; i < schema.num_fields(); ++i) {
    const arrow::DataType& type = valueTypeOf(*schema.field(i)->type());
    if (type.id() == arrow::Type::TIMESTAMP) {
      const auto form = TimestampForm::of(static_cast<const arrow::TimestampType&>(type));
      columnsOfFormat[form.example()].append(m_columns.names[i]);
      forms.insert(form.example(), form);
    }
  }
  for (auto entry = columnsOfFormat.cbegin(); entry != columnsOfFormat.cend(); ++entry) {
    const TimestampForm form = forms[entry.key()];
    m_notes += table_messages::timestampForm(m_path, shownNames(entry.value()), entry.key(),
                                             form.dateFormat(), form.isUtc);
  }
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

// A file may be damaged or forged anywhere: everything a value is reached through is checked
// before.
Status<QString> ArrowBatchReader::convert(const arrow::RecordBatch& raw, RowBatch& batch) {
  for (std::size_t i = 0; i < batch.columnCount(); ++i) {
    const arrow::Array& array = *raw.column(static_cast<int>(i));
    const QString name = m_columns.names[static_cast<qsizetype>(i)];
    if (const arrow::Status status = array.ValidateFull(); !status.ok()) {
      const QString location = table_messages::inColumn(locationOfRow(m_rowsGiven), name);
      return Failure{table_messages::damaged(
          m_path, table_messages::atLocation(location, QString::fromStdString(status.message())))};
    }
    m_tallies[i].rowsBefore = m_rowsGiven;
    if (const auto bad = convertArray(array, batch.column(i), m_tallies[i])) {
      return Failure{badValueText(i, *bad)};
    }
  }
  batch.setRowCount(raw.num_rows());
  return Done{};
}

QString ArrowBatchReader::badValueText(std::size_t column, const BadValue& value) const {
  const QString name = m_columns.names[static_cast<qsizetype>(column)];
  const QString text = QString::fromStdString(value.text);
  return table_messages::atLocation(
      table_messages::inColumn(locationOfRow(m_rowsGiven + value.row), name),
      m_columns.types[column] == MetaTypeColumn::key ? table_messages::integerIsNoKey(text, name)
                                                     : table_messages::numberNotHeld(text, name));
}

QStringList ArrowBatchReader::warnings() const {
  QStringList warnings;
  for (std::size_t i = 0; i < m_tallies.size(); ++i) {
    const QString& name = m_columns.names[static_cast<qsizetype>(i)];
    if (const RowCount& bad = m_tallies[i].badValues; bad.count > 0) {
      warnings += table_messages::readAsNull(locationOfRow(bad.firstRow), name, bad.count);
    }
    if (const RowCount& finer = m_tallies[i].finerTimes; finer.count > 0) {
      warnings +=
          table_messages::finerThanMilliseconds(locationOfRow(finer.firstRow), name, finer.count);
    }
  }
  return warnings;
}

QString ArrowBatchReader::failureText(const arrow::Status& status) const {
  return table_messages::damaged(m_path, QString::fromStdString(status.message()));
}

float ArrowBatchReader::fractionDone() const {
  const long long rows = m_file->rowCount();
  return rows <= 0 ? -1.0f : static_cast<float>(m_rowsGiven) / static_cast<float>(rows);
}

QString ArrowBatchReader::locationOfRow(long long row) const {
  return table_messages::atRow(m_path, row + 1);
}

}  // namespace kelvarin
