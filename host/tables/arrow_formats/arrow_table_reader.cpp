#include "host/tables/arrow_formats/arrow_table_reader.h"

#include <algorithm>

#include <QFile>
#include <QMap>
#include <QSet>

#include "arrow/type.h"
#include "host/tables/arrow_formats/arrow_texts.h"
#include "host/tables/arrow_formats/arrow_values.h"
#include "host/tables/arrow_formats/messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

QChar letterOf(MetaTypeColumn type) {
  return QChar::fromLatin1(static_cast<char>(type));
}

// Some rows of a group, or the failure to read one.
class ArrowUnit final : public TableUnit {
 public:
  ArrowUnit(std::shared_ptr<GroupDecoding> group, std::size_t index)
      : m_group(std::move(group)), m_index(index) {}
  explicit ArrowUnit(const QString& failure) { m_failure = failure; }

  void parse() override {
    if (m_group == nullptr) {
      return;
    }
    std::vector<DecodedColumn> decoded = m_group->decode(m_index);
    std::int64_t rowCount = m_group->rowsOfUnit(m_index);
    std::vector<BatchColumn> columns;
    for (DecodedColumn& column : decoded) {
      if (column.rowCount < rowCount) {  // the first row that is in error counts
        rowCount = column.rowCount;
        m_failure = column.failure;
      }
      if (column.values) {
        columns.push_back(*std::move(column.values));
      }
      m_tallies.push_back(column.tally);
    }
    m_group.reset();
    if (rowCount > 0) {
      m_batch = std::make_shared<RowBatch>(static_cast<std::size_t>(rowCount), std::move(columns));
    }
  }
  std::size_t byteCount() const override { return m_group == nullptr ? 0 : m_group->bytesOfUnit(); }
  // Of each column; empty where nothing was read.
  const std::vector<ColumnTally>& tallies() const { return m_tallies; }

 private:
  std::shared_ptr<GroupDecoding> m_group;
  std::size_t m_index = 0;
  std::vector<ColumnTally> m_tallies;
};

}  // namespace

ArrowTableReader::ArrowTableReader(const QString& path, std::unique_ptr<ArrowFile> file,
                                   ColumnRules rules)
    : m_file(std::move(file)), m_rules(std::move(rules)), m_plan(std::make_shared<DecodingPlan>()) {
  m_plan->path = path;
  m_plan->areBadValuesNull = m_rules.areBadValuesNull;
}

Result<TableColumns, QString> ArrowTableReader::open(IsStopped) {
  QFile file(m_plan->path);
  if (!file.open(QIODevice::ReadOnly)) {
    return Failure{table_messages::cannotRead(m_plan->path, file.errorString())};
  }
  file.close();
  if (const arrow::Status status = m_file->open(QFile::encodeName(m_plan->path).toStdString());
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
  m_plan->rowsInUnit = m_file->rowsInUnit();
  m_tallies.resize(m_plan->columns.types.size());
  return m_plan->columns;
}

Status<QString> ArrowTableReader::settleColumns(const arrow::Schema& schema) {
  QSet<QString> known;
  for (const auto& field : schema.fields()) {
    const QString name = QString::fromStdString(field->name());
    const std::vector<MetaTypeColumn> types = columnTypesOf(*field->type());
    if (types.empty()) {
      return Failure{table_messages::unsupportedType(
          m_plan->path, name, QString::fromStdString(field->type()->ToString()))};
    }
    if (known.contains(name)) {
      return Failure{table_messages::duplicateColumn(m_plan->path, name)};
    }
    known.insert(name);
    m_plan->columns.names.append(name);
    m_plan->columns.types.push_back(types.front());
  }
  return Done{};
}

Status<QString> ArrowTableReader::takeDeclaredTypes(const arrow::Schema& schema) {
  const QHash<QString, qsizetype> positions = positionsOf(m_plan->columns.names);
  for (const DeclaredColumn& declared : m_rules.declared) {
    const qsizetype index = positions.value(declared.name, -1);
    if (index < 0) {
      return Failure{table_messages::declaredColumnAbsent(m_plan->path, declared.name,
                                                          shownNames(m_plan->columns.names))};
    }
    const arrow::DataType& type = *schema.field(static_cast<int>(index))->type();
    const std::vector<MetaTypeColumn> types = columnTypesOf(type);
    if (std::find(types.begin(), types.end(), declared.type) == types.end()) {
      QStringList possible;
      for (const MetaTypeColumn possibleType : types) {
        possible += letterOf(possibleType);
      }
      return Failure{table_messages::cannotBeDeclared(
          m_plan->path, declared.name, QString::fromStdString(type.ToString()),
          letterOf(declared.type), possible.join(QStringLiteral(" or ")))};
    }
    m_plan->columns.types[static_cast<std::size_t>(index)] = declared.type;
  }
  return Done{};
}

// One line for each form, however many columns have it.
void ArrowTableReader::noteTimestamps(const arrow::Schema& schema) {
  QMap<QString, QVector<QString>> columnsOfFormat;
  QHash<QString, TimestampForm> forms;
  for (int i = 0; i < schema.num_fields(); ++i) {
    const arrow::DataType& type = valueTypeOf(*schema.field(i)->type());
    if (type.id() == arrow::Type::TIMESTAMP) {
      const auto form = TimestampForm::of(static_cast<const arrow::TimestampType&>(type));
      columnsOfFormat[form.example()].append(m_plan->columns.names[i]);
      forms.insert(form.example(), form);
    }
  }
  for (auto entry = columnsOfFormat.cbegin(); entry != columnsOfFormat.cend(); ++entry) {
    const TimestampForm form = forms[entry.key()];
    m_notes += table_messages::timestampForm(m_plan->path, shownNames(entry.value()), entry.key(),
                                             form.dateFormat(), form.isUtc);
  }
}

std::unique_ptr<TableUnit> ArrowTableReader::readUnit() {
  while (m_group == nullptr || m_nextUnit == m_group->unitCount()) {
    if (const arrow::Status status = beginGroup(); !status.ok()) {
      return std::make_unique<ArrowUnit>(failureText(status));
    }
    if (m_group == nullptr) {
      return nullptr;
    }
  }
  return std::make_unique<ArrowUnit>(m_group, m_nextUnit++);
}

arrow::Status ArrowTableReader::beginGroup() {
  m_nextUnit = 0;
  m_rowsBefore += m_group == nullptr ? 0 : m_group->rowCount();
  m_group.reset();
  ARROW_ASSIGN_OR_RAISE(auto group, m_file->nextGroup());
  if (group != nullptr) {
    m_group = std::make_shared<GroupDecoding>(m_plan, std::move(group), m_rowsBefore);
  }
  return arrow::Status::OK();
}

void ArrowTableReader::accept(TableUnit& unit) {
  const auto& tallies = static_cast<const ArrowUnit&>(unit).tallies();
  for (std::size_t i = 0; i < tallies.size(); ++i) {
    m_tallies[i].add(tallies[i]);
  }
  m_rowsAccepted += unit.batch() == nullptr ? 0 : static_cast<long long>(unit.batch()->rowCount());
}

QStringList ArrowTableReader::warnings() const {
  QStringList warnings;
  for (std::size_t i = 0; i < m_tallies.size(); ++i) {
    const QString& name = m_plan->columns.names.at(static_cast<qsizetype>(i));
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

QString ArrowTableReader::failureText(const arrow::Status& status) const {
  return table_messages::damaged(m_plan->path, QString::fromStdString(status.message()));
}

float ArrowTableReader::fractionDone() const {
  const long long rows = m_file->rowCount();
  return rows <= 0 ? -1.0f : static_cast<float>(m_rowsAccepted) / static_cast<float>(rows);
}

QString ArrowTableReader::locationOfRow(long long row) const {
  return table_messages::atRow(m_plan->path, row + 1);
}

}  // namespace kelvarin
