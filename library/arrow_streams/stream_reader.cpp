#include "library/arrow_streams/stream_reader.h"

#include <algorithm>

#include "host/tables/arrow/value_messages.h"
#include "host/tables/files/messages.h"
#include "library/arrow_streams/messages.h"

namespace kelvarin {

namespace {

// Enough rows for what is done once a unit, and few enough for several threads.
constexpr std::int64_t kRowsInUnit = 32 * 1024;
constexpr std::int64_t kFewestRowsInUnit = 1024;
constexpr std::int64_t kValuesInUnit = 512 * 1024;

std::int64_t rowsInUnitOf(std::size_t columns) {
  const auto count = static_cast<std::int64_t>(std::max<std::size_t>(columns, 1));
  return std::clamp(kValuesInUnit / count, kFewestRowsInUnit, kRowsInUnit);
}

QString describedColumns(const TableColumns& columns) {
  QVector<QString> described;
  for (std::size_t i = 0; i < columns.types.size(); ++i) {
    described.append(
        QStringLiteral("%1 (%2)").arg(columns.names[static_cast<qsizetype>(i)],
                                      QChar::fromLatin1(static_cast<char>(columns.types[i]))));
  }
  return shownNames(described);
}

}  // namespace

ErrorDetails errorOfRead(const ReadFault& fault) {
  ErrorDetails error = errorOf(KELVARIN_FAILED, fault.text);
  error.column = fault.location.column.toStdString();
  error.row = fault.location.row;
  return error;
}

Result<StreamColumns, ReadFault> StreamColumns::of(const ArrowSchema& schema,
                                                   const std::vector<DeclaredColumn>& declared) {
  StreamColumns made;
  std::vector<ArrowField> fields;
  std::vector<std::pair<QString, TimestampForm>> timestamps;
  for (std::int64_t i = 0; i < schema.n_children; ++i) {
    const ArrowSchema& field = *schema.children[i];
    const QString name = QString::fromUtf8(field.name == nullptr ? "" : field.name);
    const ArrowType type = arrowTypeOf(field);
    fields.push_back({name, QString::fromStdString(typeNameOf(field)), columnTypesOf(type)});
    made.arrowTypes.push_back(type);
    if (type.kind == ArrowKind::timestamp) {
      timestamps.emplace_back(name, type.form);
    }
  }
  auto columns = arrowColumnsOf(stream_messages::source(), fields, {{.declared = declared}});
  if (!columns) {
    return Failure{columns.error()};
  }
  made.columns = std::move(columns->columns);
  made.notes = notesOn(stream_messages::source(), timestamps);
  return made;
}

// Some rows of a batch, or the failure to read one.
class StreamReader::Unit final : public TableUnit {
 public:
  Unit(const StreamReader& reader, std::shared_ptr<ImportedBatch> batch, std::int64_t begin,
       std::int64_t end, long long firstRow)
      : m_reader(reader),
        m_imported(std::move(batch)),
        m_begin(begin),
        m_end(end),
        m_firstRow(firstRow) {}
  Unit(const StreamReader& reader, ReadFault failure) : m_reader(reader) {
    fail(std::move(failure));
  }

  void parse() override {
    if (m_imported == nullptr) {
      return;
    }
    std::int64_t rowCount = m_end - m_begin;
    std::vector<BatchColumn> columns;
    for (std::size_t i = 0; i < m_imported->columnCount(); ++i) {
      ColumnTally tally;
      tally.areBadValuesNull = m_reader.m_settings.rules.areBadValuesNull;
      tally.rowsBefore = m_firstRow;
      auto made = column(i, tally);
      if (!made) {
        fail({stream_messages::brokenBatch(m_reader.locationOfRow(m_firstRow),
                                           QString::fromStdString(made.error())),
              {m_reader.m_columns.columns.names[static_cast<qsizetype>(i)]}});
        return;
      }
      if (made->bad && made->bad->row < rowCount) {  // the first row that is in error counts
        rowCount = made->bad->row;
        fail(badValue(i, *made->bad));
      }
      columns.push_back(std::move(made->values));
      m_tallies.push_back(tally);
    }
    m_imported.reset();
    if (rowCount > 0) {
      m_batch = std::make_shared<RowBatch>(static_cast<std::size_t>(rowCount), std::move(columns));
    }
  }
  std::size_t byteCount() const override {
    return m_imported == nullptr ? 0
                                 : static_cast<std::size_t>(m_end - m_begin) *
                                       m_imported->columnCount() * sizeof(double);
  }
  // Of each column; empty where nothing was read.
  const std::vector<ColumnTally>& tallies() const { return m_tallies; }

 private:
  Result<ConvertedArray> column(std::size_t index, ColumnTally& tally) const {
    const MetaTypeColumn type = m_reader.m_columns.columns.types[index];
    if (m_reader.m_settings.isUntouched(index)) {
      if (auto numbers = m_imported->untouched(index, type, m_begin, m_end)) {
        return ConvertedArray{BatchColumn::ofLateNumbers(std::move(numbers), 0), std::nullopt};
      }
    }
    return m_imported->column(index, type, m_begin, m_end, tally);
  }
  ReadFault badValue(std::size_t column, const BadValue& bad) const {
    const TableColumns& columns = m_reader.m_columns.columns;
    const QString& name = columns.names[static_cast<qsizetype>(column)];
    const QString value = QString::fromStdString(bad.text);
    const QString location =
        table_messages::inColumn(m_reader.locationOfRow(m_firstRow + bad.row), name);
    const QString what = columns.types[column] == MetaTypeColumn::key
                             ? table_messages::integerIsNoKey(value)
                             : table_messages::numberNotHeld(value);
    return {table_messages::atLocation(location, what) + stream_messages::declareType(name),
            {name, m_reader.m_settings.firstRow + m_firstRow + bad.row}};
  }

  const StreamReader& m_reader;
  std::shared_ptr<ImportedBatch> m_imported;
  std::int64_t m_begin = 0;
  std::int64_t m_end = 0;
  long long m_firstRow = 0;
  std::vector<ColumnTally> m_tallies;
};

StreamReader::StreamReader(InputStream stream, InputSettings settings)
    : m_stream(std::move(stream)), m_settings(std::move(settings)) {}

Result<TableColumns, QString> StreamReader::open(IsStopped) {
  const auto schema = m_stream.schema();
  if (!schema) {
    m_locationOfFailure = schema.error().location;
    return Failure{schema.error().text};
  }
  auto columns = StreamColumns::of(**schema, m_settings.rules.declared);
  if (!columns) {
    m_locationOfFailure = columns.error().location;
    return Failure{columns.error().text};
  }
  if (m_settings.expected && (columns->columns.names != m_settings.expected->names ||
                              columns->columns.types != m_settings.expected->types)) {
    return Failure{stream_messages::otherColumns(describedColumns(*m_settings.expected),
                                                 describedColumns(columns->columns))};
  }
  m_columns = std::move(*columns);
  m_rowsInUnit = rowsInUnitOf(m_columns.columns.types.size());
  m_tallies.resize(m_columns.columns.types.size());
  return m_columns.columns;
}

// False: the end.
Result<bool, ReadFault> StreamReader::nextBatch() {
  m_rowsBefore += m_batch == nullptr ? 0 : m_batch->rowCount();
  m_batch.reset();
  m_nextRow = 0;
  ArrowArray array;
  auto isThere = m_stream.next(array);
  if (!isThere || !*isThere) {
    return isThere;
  }
  auto batch = ImportedBatch::take(array, m_columns.arrowTypes);
  if (!batch) {
    return Failure{ReadFault{stream_messages::brokenBatch(locationOfRow(m_rowsBefore),
                                                          QString::fromStdString(batch.error()))}};
  }
  m_batch = std::move(*batch);
  return true;
}

std::unique_ptr<TableUnit> StreamReader::readUnit() {
  while (!m_isOver && (m_batch == nullptr || m_nextRow == m_batch->rowCount())) {
    const auto isThere = nextBatch();
    m_isOver = !isThere || !*isThere;
    if (!isThere) {
      return std::make_unique<Unit>(*this, isThere.error());
    }
  }
  if (m_isOver) {
    return nullptr;
  }
  const std::int64_t begin = m_nextRow;
  m_nextRow = std::min(begin + m_rowsInUnit, m_batch->rowCount());
  return std::make_unique<Unit>(*this, m_batch, begin, m_nextRow, m_rowsBefore + begin);
}

void StreamReader::accept(TableUnit& unit) {
  const auto& tallies = static_cast<const Unit&>(unit).tallies();
  for (std::size_t i = 0; i < tallies.size(); ++i) {
    m_tallies[i].add(tallies[i]);
  }
}

QStringList StreamReader::warnings() const {
  return warningsAbout(m_tallies, m_columns.columns.names,
                       [this](long long row) { return locationOfRow(row); });
}

QString StreamReader::locationOfRow(long long row) const {
  return table_messages::atRow(stream_messages::source(), m_settings.firstRow + row + 1);
}

}  // namespace kelvarin
