#include "host/tables/arrow_formats/arrow_table_reader.h"

#include "arrow/type.h"
#include "host/tables/arrow/arrow_columns.h"
#include "host/tables/arrow/value_messages.h"
#include "host/tables/arrow_formats/arrow_texts.h"
#include "host/tables/arrow_formats/arrow_values.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

std::vector<ArrowField> fieldsOf(const arrow::Schema& schema) {
  std::vector<ArrowField> fields;
  for (const auto& field : schema.fields()) {
    fields.push_back({QString::fromStdString(field->name()),
                      QString::fromStdString(field->type()->ToString()),
                      columnTypesOf(*field->type())});
  }
  return fields;
}

// One line for each form, however many columns have it, and one for what is left out.
QStringList notesOnColumns(const QString& source, const arrow::Schema& schema,
                           const ArrowColumns& read) {
  std::vector<std::pair<QString, TimestampForm>> timestamps;
  for (const int index : read.fields) {
    const auto& field = schema.field(index);
    const arrow::DataType& type = valueTypeOf(*field->type());
    if (type.id() == arrow::Type::TIMESTAMP) {
      timestamps.emplace_back(QString::fromStdString(field->name()),
                              formOf(static_cast<const arrow::TimestampType&>(type)));
    }
  }
  QStringList notes = notesOn(source, timestamps);
  if (!read.leftOut.isEmpty()) {
    notes += table_messages::columnsLeftOut(source, read.leftOut.size(), shownNames(read.leftOut));
  }
  return notes;
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
        fail(column.failure);
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
                                   ArrowRules rules)
    : m_path(path),
      m_file(std::move(file)),
      m_rules(std::move(rules)),
      m_plan(std::make_shared<DecodingPlan>()) {
  m_plan->source = table_messages::fileSource(path);
  m_plan->areBadValuesNull = m_rules.columns.areBadValuesNull;
}

Result<TableColumns, QString> ArrowTableReader::open(IsStopped isStopped) {
  const auto input = std::make_shared<InputFile>();
  if (const Status<QString> status = input->open(m_path, std::move(isStopped)); !status) {
    return Failure{status.error()};
  }
  m_mayWait = !input->canReadAgain();
  if (const arrow::Status status = m_file->open(input); !status.ok()) {
    return Failure{failureText(status)};
  }
  const arrow::Schema& schema = *m_file->schema();
  auto columns = arrowColumnsOf(m_plan->source, fieldsOf(schema), m_rules);
  if (!columns) {
    m_locationOfFailure = columns.error().location;
    return Failure{columns.error().text};
  }
  m_notes = notesOnColumns(m_plan->source, schema, *columns);
  if (const arrow::Status status = m_file->choose(columns->fields); !status.ok()) {
    return Failure{failureText(status)};
  }
  m_plan->columns = std::move(columns->columns);
  m_plan->areJson = std::move(columns->areJson);
  m_plan->rowsInUnit = m_file->rowsInUnit();
  m_tallies.resize(m_plan->columns.types.size());
  return m_plan->columns;
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

long long ArrowTableReader::skipRows(long long count) {
  const long long skipped = m_file->skipGroups(count);
  m_rowsBefore += skipped;
  m_rowsAccepted += skipped;
  return skipped;
}

void ArrowTableReader::accept(TableUnit& unit) {
  const auto& tallies = static_cast<const ArrowUnit&>(unit).tallies();
  for (std::size_t i = 0; i < tallies.size(); ++i) {
    m_tallies[i].add(tallies[i]);
  }
  m_rowsAccepted += unit.batch() == nullptr ? 0 : static_cast<long long>(unit.batch()->rowCount());
}

QStringList ArrowTableReader::warnings() const {
  return m_file->warnings(m_plan->source) +
         warningsAbout(m_tallies, m_plan->columns.names,
                       [this](long long row) { return locationOfRow(row); });
}

QString ArrowTableReader::failureText(const arrow::Status& status) const {
  return table_messages::damaged(m_plan->source, QString::fromStdString(status.message()));
}

float ArrowTableReader::fractionDone() const {
  const long long rows = m_file->rowCount();
  return rows <= 0 ? m_file->fractionRead()
                   : static_cast<float>(m_rowsAccepted) / static_cast<float>(rows);
}

QString ArrowTableReader::locationOfRow(long long row) const {
  return table_messages::atRow(m_plan->source, row + 1);
}

}  // namespace kelvarin
