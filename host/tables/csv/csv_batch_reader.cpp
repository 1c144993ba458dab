#include "host/tables/csv/csv_batch_reader.h"

#include <algorithm>
#include <numeric>

#include "host/tables/csv/csv_field_texts.h"
#include "host/tables/csv/csv_guess.h"
#include "host/tables/csv/messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {
constexpr long long kInferredRows = 10000;
}  // namespace

CsvBatchReader::CsvBatchReader(const QString& path, const CsvFileSettings& settings,
                               ColumnRules rules, std::size_t unitSize)
    : m_rules(std::move(rules)),
      m_unitSize(unitSize),
      m_settings(settings),
      m_table(std::make_shared<CsvTable>()) {
  m_table->path = path;
  m_table->areBadValuesNull = m_rules.areBadValuesNull;
}

Result<TableColumns, QString> CsvBatchReader::open(IsStopped isStopped) {
  m_file->endStartAtPauseAfter(mayAllBeDeclared() ? 1 : kInferredRows);
  if (const auto status = m_file->open(m_table->path, m_settings.encoding, std::move(isStopped));
      !status) {
    return Failure{status.error()};
  }
  if (const auto status = settleDialect(); !status) {
    return Failure{status.error()};
  }
  Result<CsvHead, QString> head = readCsvHead(*m_file, m_table->dialect);
  if (!head) {
    return Failure{head.error()};
  }
  m_head = std::move(*head);
  m_notes = m_head.notes;
  if (!m_dialectInWords.isEmpty()) {
    m_notes.prepend(m_dialectInWords);
  }
  m_line = m_head.dataLine;
  m_bytesDone = m_head.dataOffset;
  if (const auto status = settleColumns(); !status) {
    return Failure{status.error()};
  }
  if (const auto status = settleFileColumn(); !status) {
    return Failure{status.error()};
  }
  if (const auto status = settleOrder(); !status) {
    return Failure{status.error()};
  }
  const std::size_t columnCount = m_table->columns.types.size();
  m_table->rules.emplace(m_table->dialect, columnCount);
  m_badFields.resize(columnCount);
  m_locator.emplace(*m_file, m_table->dialect, m_head);
  m_units.emplace(*m_file, m_table->dialect, columnCount, std::move(m_head.bytesRead),
                  m_table->blocks, m_unitSize);
  if (const auto status = m_first == nullptr ? inferTypes() : takeTypesOfFirst(); !status) {
    return Failure{status.error()};
  }
  return columns();
}

// As far as that is known before the file has been looked at.
bool CsvBatchReader::mayAllBeDeclared() const {
  const auto isDeclared = [this](const QString& name) {
    return std::ranges::find(m_rules.declared, name, &DeclaredColumn::name) !=
           m_rules.declared.end();
  };
  return !m_rules.declared.empty() && std::ranges::all_of(m_rules.chosen, isDeclared);
}

void CsvBatchReader::follow(const CsvBatchReader& first, std::size_t fileIndex) {
  m_first = first.m_table;
  m_table->fileIndex = fileIndex;
}

bool CsvBatchReader::hasDialectOf(const CsvBatchReader& other) const {
  const CsvDialect& own = m_table->dialect;
  const CsvDialect& others = other.m_table->dialect;
  return own.separator == others.separator && own.quote == others.quote &&
         m_table->encoding == other.m_table->encoding;
}

void CsvBatchReader::close() {
  m_units.reset();
  m_file = std::make_unique<TextInput>();
}

// Of the batches.
TableColumns CsvBatchReader::columns() const {
  TableColumns columns;
  for (const std::size_t column : m_table->order) {
    columns.names += m_table->columns.names[static_cast<qsizetype>(column)];
    columns.types.push_back(m_table->columns.types[column]);
  }
  if (m_table->fileName) {
    columns.names += m_settings.fileColumn;
    columns.types.push_back(MetaTypeColumn::text);
  }
  return columns;
}

Status<QString> CsvBatchReader::settleFileColumn() {
  if (m_settings.fileColumn.isEmpty() || m_isCountOnly) {
    return Done{};
  }
  if (m_table->columns.names.contains(m_settings.fileColumn)) {
    return Failure{table_messages::fileColumnThere(table_messages::fileSource(m_table->path),
                                                   m_settings.fileColumn)};
  }
  m_table->fileName = (m_fileName.isEmpty() ? m_table->path : m_fileName).toStdString();
  return Done{};
}

// The column of file names stands behind the chosen ones, whether it is among them or not.
Status<QString> CsvBatchReader::settleOrder() {
  std::vector<std::size_t>& order = m_table->order;
  const QVector<QString>& names = m_table->columns.names;
  if (m_isCountOnly) {
    return Done{};
  }
  if (m_rules.chosen.isEmpty()) {
    order.resize(static_cast<std::size_t>(names.size()));
    std::iota(order.begin(), order.end(), 0);
    return Done{};
  }
  const QHash<QString, qsizetype> positions = positionsOf(names);
  for (const QString& name : m_rules.chosen) {
    const qsizetype position = positions.value(name, -1);
    if (position >= 0) {
      order.push_back(static_cast<std::size_t>(position));
    } else if (!m_table->fileName || name != m_settings.fileColumn) {
      return Failure{chosenColumnAbsent(table_messages::fileSource(m_table->path), name, names)};
    }
  }
  return Done{};
}

Status<QString> CsvBatchReader::takeTypesOfFirst() {
  TableColumns& own = m_table->columns;
  const QVector<QString>& wanted = m_first->columns.names;
  const QHash<QString, qsizetype> positions = positionsOf(own.names);
  for (qsizetype i = 0; i < wanted.size(); ++i) {
    const qsizetype position = positions.value(wanted[i], -1);
    if (position < 0 || own.names.size() != wanted.size()) {
      return Failure{table_messages::otherColumns(table_messages::fileSource(m_table->path),
                                                  shownNames(own.names), m_first->path,
                                                  shownNames(wanted))};
    }
    const auto from = static_cast<std::size_t>(i);
    const auto to = static_cast<std::size_t>(position);
    own.types[to] = m_first->columns.types[from];
    m_table->isDeclared[to] = m_first->isDeclared[from];
  }
  m_table->order.clear();
  for (const std::size_t column : m_first->order) {
    const QString& name = wanted[static_cast<qsizetype>(column)];
    m_table->order.push_back(static_cast<std::size_t>(positions[name]));
  }
  return Done{};
}

// Looks at the start of the file for what the settings leave open.
Status<QString> CsvBatchReader::settleDialect() {
  CsvDialect& dialect = m_table->dialect;
  dialect = m_settings.dialect;
  m_table->encoding = m_file->encoding();
  const CsvGuessed& guessed = m_settings.guessed;
  if (guessed.isSeparator || guessed.isQuote) {
    const Result<std::string_view, QString> start = m_file->start();
    if (!start) {
      return Failure{start.error()};
    }
    const CsvGuess guess = guessCsv(*start, m_file->isStartWhole(), dialect, guessed);
    dialect.separator = guess.separator;
    dialect.quote = dialect.hasQuote ? guess.quote : dialect.quote;
  }
  if (guessed.isSeparator || guessed.isQuote || !m_settings.encoding) {
    m_dialectInWords = table_messages::atLocation(
        table_messages::fileSource(m_table->path),
        table_messages::dialectFound(
            separatorText(dialect.separator),
            dialect.hasQuote ? QString(QLatin1Char(dialect.quote)) : QString(),
            nameOfEncoding(m_file->encoding()), dialect.hasHeader));
  }
  return Done{};
}

Status<QString> CsvBatchReader::settleColumns() {
  if (const auto status = nameByDeclarations(); !status) {
    return status;
  }
  const QVector<QString>& names = m_head.names;
  if (names.isEmpty()) {
    return Failure{table_messages::noColumns(m_table->path)};
  }
  const auto columnCount = static_cast<std::size_t>(names.size());
  std::vector<MetaTypeColumn>& types = m_table->columns.types;
  m_table->columns.names = names;
  types.assign(columnCount, MetaTypeColumn::text);
  m_table->isDeclared.assign(columnCount, false);
  if (m_rules.declared.empty()) {
    return Done{};
  }
  const QHash<QString, qsizetype> positions = positionsOf(names);
  for (const DeclaredColumn& column : m_rules.declared) {
    const qsizetype index = positions.value(column.name, -1);
    if (index < 0) {
      return Failure{table_messages::declaredColumnAbsent(table_messages::fileSource(m_table->path),
                                                          column.name, shownNames(names))};
    }
    types[static_cast<std::size_t>(index)] = column.type;
    m_table->isDeclared[static_cast<std::size_t>(index)] = true;
  }
  return Done{};
}

// Declared columns name the columns of a file without header in order, unless they use the
// generated names.
Status<QString> CsvBatchReader::nameByDeclarations() {
  QVector<QString>& names = m_head.names;
  const std::vector<DeclaredColumn>& declared = m_rules.declared;
  if (m_table->dialect.hasHeader || declared.empty()) {
    return Done{};
  }
  const QHash<QString, qsizetype> generated = positionsOf(names);
  if (std::all_of(declared.begin(), declared.end(),
                  [&](const DeclaredColumn& column) { return generated.contains(column.name); })) {
    return Done{};
  }
  const auto declaredCount = static_cast<qsizetype>(declared.size());
  if (names.isEmpty()) {
    names.resize(declaredCount);
  }
  if (declaredCount > names.size()) {
    return Failure{table_messages::tooManyDeclared(m_table->path, declaredCount, names.size())};
  }
  for (qsizetype i = 0; i < declaredCount; ++i) {
    const QString& name = declared[static_cast<std::size_t>(i)].name;
    if (generated.value(name, -1) >= declaredCount) {
      return Failure{
          table_messages::duplicateColumn(table_messages::fileSource(m_table->path), name)};
    }
    names[i] = name;
  }
  return Done{};
}

// A bad record ends the first rows; the rows before it come first. Where all types are declared,
// nobody has to wait for more rows of a pipe.
Status<QString> CsvBatchReader::inferTypes() {
  std::vector<TypeInference> inferences(m_table->columns.types.size());
  long long line = m_line;
  bool hasBadRecord = false;
  const std::vector<std::size_t>& order = m_table->order;
  const bool isDeclared = std::ranges::all_of(
      order, [this](std::size_t column) { return m_table->isDeclared[column]; });
  const long long mostRows = isDeclared && !m_file->canOpenAgain() ? 1 : kInferredRows;
  for (long long rows = 0; rows < mostRows && !hasBadRecord;) {
    std::unique_ptr<CsvUnit> unit = readPiece();
    if (unit == nullptr) {
      break;
    }
    unit->index();
    hasBadRecord = unit->hasBadRecord();
    if (hasBadRecord && rows + unit->block().rowCount() == 0) {
      unit->settle(line);
      return Failure{unit->failure()};
    }
    for (const std::size_t i : order) {
      inferences[i].look(unit->block(), i, *m_table->rules, kInferredRows - rows, line);
    }
    rows += unit->block().rowCount();
    line += unit->lineCount();
    m_held.push_back(std::move(unit));
  }
  for (const std::size_t i : order) {
    if (!m_table->isDeclared[i]) {
      m_table->columns.types[i] = inferences[i].type();
    }
  }
  noteTextColumns(inferences);
  return Done{};
}

void CsvBatchReader::noteTextColumns(const std::vector<TypeInference>& inferences) {
  constexpr int kMaxNotes = 100;
  int columns = 0;
  for (std::size_t i = 0; i < inferences.size(); ++i) {
    const FieldForText* field = m_table->isDeclared[i] ? nullptr : inferences[i].fieldForText();
    if (field == nullptr || ++columns > kMaxNotes) {
      continue;
    }
    const QString name = m_table->columns.names[static_cast<qsizetype>(i)];
    m_notes += table_messages::atLocation(
        table_messages::inColumn(table_messages::atLine(m_table->path, field->line), name),
        textColumnText(field->text, name, m_table->dialect.numbers));
  }
  if (columns > kMaxNotes) {
    m_notes += table_messages::moreNumbersAreText(m_table->path, columns - kMaxNotes);
  }
}

std::unique_ptr<TableUnit> CsvBatchReader::readUnit() {
  if (m_held.empty()) {
    return readPiece();
  }
  std::unique_ptr<CsvUnit> unit = std::move(m_held.front());
  m_held.pop_front();
  return unit;
}

std::unique_ptr<CsvUnit> CsvBatchReader::readPiece() {
  CsvPiece piece;
  return m_units->read(piece) ? std::make_unique<CsvUnit>(m_table, std::move(piece)) : nullptr;
}

void CsvBatchReader::accept(TableUnit& unit) {
  auto& accepted = static_cast<CsvUnit&>(unit);
  accepted.settle(m_line);
  const std::vector<BadFieldCount>& badFields = accepted.badFields();
  for (std::size_t i = 0; i < badFields.size(); ++i) {
    if (m_badFields[i].count == 0) {
      m_badFields[i].firstLine = m_line + badFields[i].firstLine;
    }
    m_badFields[i].count += badFields[i].count;
  }
  m_line += accepted.lineCount();
  m_bytesDone += static_cast<long long>(accepted.byteCount());
}

Status<QString> CsvBatchReader::tryFirstRows() {
  long long rowsLeft = kInferredRows;
  for (const std::unique_ptr<CsvUnit>& unit : m_held) {
    unit->parseFirst(rowsLeft);
    accept(*unit);
    if (!unit->failure().isEmpty()) {
      return Failure{unit->failure()};
    }
    const RowBatchPointer& batch = unit->batch();
    rowsLeft -= batch == nullptr ? 0 : static_cast<long long>(batch->rowCount());
  }
  m_held.clear();
  return Done{};
}

float CsvBatchReader::fractionDone() const {
  const long long size = m_file->fileSize();
  if (size <= 0 || !m_file->isPlain()) {
    return m_file->fractionRead();
  }
  return static_cast<float>(m_bytesDone) / static_cast<float>(size);
}

QString CsvBatchReader::locationOfRow(long long row) const {
  return m_locator->locationOfRow(row);
}

QStringList CsvBatchReader::warnings() const {
  std::vector<std::pair<long long, std::size_t>> columnsByLine;
  for (std::size_t i = 0; i < m_badFields.size(); ++i) {
    if (m_badFields[i].count > 0) {
      columnsByLine.emplace_back(m_badFields[i].firstLine, i);
    }
  }
  std::sort(columnsByLine.begin(), columnsByLine.end());
  QStringList warnings;
  for (const auto& [line, column] : columnsByLine) {
    warnings += table_messages::readAsNull(table_messages::atLine(m_table->path, line),
                                           m_table->columns.names[static_cast<qsizetype>(column)],
                                           m_badFields[column].count);
  }
  return warnings;
}

}  // namespace kelvarin
