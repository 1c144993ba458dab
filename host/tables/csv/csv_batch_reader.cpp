#include "host/tables/csv/csv_batch_reader.h"

#include <algorithm>

#include "host/tables/csv/messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {
constexpr long long kInferredRows = 10000;

QString lostDigitsText(std::string_view field, double number) {
  return lostDigits(field, number) == LostDigits::leadingZero ? table_messages::hasLeadingZero()
                                                              : table_messages::hasTooManyDigits();
}

QString badNumberText(const std::string& field, const QString& column) {
  const QString value = QString::fromStdString(field);
  double number = 0;
  return parseNumber(field, number)
             ? table_messages::numberLosesDigits(value, lostDigitsText(field, number), column)
             : table_messages::badNumber(value);
}

// Why a column that looks like numbers is text.
QString textColumnText(const std::string& field, const QString& column) {
  const QString value = QString::fromStdString(field);
  double number = 0;
  if (parseNumber(field, number)) {
    return table_messages::numbersAreText(value, lostDigitsText(field, number), column);
  }
  return isMissingWord(field) ? table_messages::missingWordIsText(value)
                              : table_messages::peoplesNumbersAreText(value);
}

}  // namespace

CsvBatchReader::CsvBatchReader(const QString& path, const CsvDialect& dialect, ColumnRules rules)
    : m_path(path), m_dialect(dialect), m_rules(std::move(rules)) {}

Result<TableColumns, QString> CsvBatchReader::open() {
  if (const auto status = m_file.open(m_path); !status) {
    return Failure{status.error()};
  }
  Result<CsvHead, QString> head = readCsvHead(m_file, m_dialect);
  if (!head) {
    return Failure{head.error()};
  }
  m_head = std::move(*head);
  m_notes = m_head.notes;
  if (const auto status = settleColumns(); !status) {
    return Failure{status.error()};
  }
  m_nulls.emplace(m_dialect, m_columns.types.size());
  m_locator.emplace(m_file, m_dialect, m_head);
  m_blocks.emplace(m_file, m_dialect, m_head, m_columns.names);
  if (const auto status = inferTypes(); !status) {
    return Failure{status.error()};
  }
  return m_columns;
}

Status<QString> CsvBatchReader::settleColumns() {
  if (const auto status = nameByDeclarations(); !status) {
    return status;
  }
  const QVector<QString>& names = m_head.names;
  if (names.isEmpty()) {
    return Failure{table_messages::noColumns(m_path)};
  }
  const auto columnCount = static_cast<std::size_t>(names.size());
  m_columns.names = names;
  m_columns.types.assign(columnCount, MetaTypeColumn::text);
  m_isDeclared.assign(columnCount, false);
  m_badFields.assign(columnCount, BadFieldCount{m_rules.areBadValuesNull, 0, -1});
  if (m_rules.declared.empty()) {
    return Done{};
  }
  const QHash<QString, qsizetype> positions = positionsOf(names);
  for (const DeclaredColumn& column : m_rules.declared) {
    const qsizetype index = positions.value(column.name, -1);
    if (index < 0) {
      return Failure{table_messages::declaredColumnAbsent(m_path, column.name, shownNames(names))};
    }
    m_columns.types[static_cast<std::size_t>(index)] = column.type;
    m_isDeclared[static_cast<std::size_t>(index)] = true;
  }
  return Done{};
}

// Declared columns name the columns of a file without header in order, unless they use the
// generated names.
Status<QString> CsvBatchReader::nameByDeclarations() {
  QVector<QString>& names = m_head.names;
  const std::vector<DeclaredColumn>& declared = m_rules.declared;
  if (m_dialect.hasHeader || declared.empty()) {
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
    return Failure{table_messages::tooManyDeclared(m_path, declaredCount, names.size())};
  }
  for (qsizetype i = 0; i < declaredCount; ++i) {
    const QString& name = declared[static_cast<std::size_t>(i)].name;
    if (generated.value(name, -1) >= declaredCount) {
      return Failure{table_messages::duplicateColumn(m_path, name)};
    }
    names[i] = name;
  }
  return Done{};
}

Status<QString> CsvBatchReader::inferTypes() {
  std::vector<TypeInference> inferences(m_columns.types.size());
  for (long long rows = 0; rows < kInferredRows;) {
    CsvBlock block;
    const Result<ReadOutcome, QString> outcome = m_blocks->next(block);
    if (!outcome) {
      return Failure{outcome.error()};
    }
    if (*outcome == ReadOutcome::end) {
      break;
    }
    for (std::size_t i = 0; i < inferences.size(); ++i) {
      inferences[i].look(block, i, *m_nulls, kInferredRows - rows);
    }
    rows += block.rowCount();
    m_held.push_back(std::move(block));
  }
  for (std::size_t i = 0; i < inferences.size(); ++i) {
    if (!m_isDeclared[i]) {
      m_columns.types[i] = inferences[i].type();
    }
  }
  noteTextColumns(inferences);
  return Done{};
}

void CsvBatchReader::noteTextColumns(const std::vector<TypeInference>& inferences) {
  constexpr int kMaxNotes = 100;
  int columns = 0;
  for (std::size_t i = 0; i < inferences.size(); ++i) {
    const FieldForText* field = m_isDeclared[i] ? nullptr : inferences[i].fieldForText();
    if (field == nullptr || ++columns > kMaxNotes) {
      continue;
    }
    const QString name = m_columns.names[static_cast<qsizetype>(i)];
    m_notes += table_messages::atLocation(
        table_messages::inColumn(table_messages::atLine(m_path, field->line), name),
        textColumnText(field->text, name));
  }
  if (columns > kMaxNotes) {
    m_notes += table_messages::moreNumbersAreText(m_path, columns - kMaxNotes);
  }
}

Result<ReadOutcome, QString> CsvBatchReader::next(RowBatch& batch) {
  if (!m_held.empty()) {
    m_block = std::move(m_held.front());
    m_held.pop_front();
  } else {
    const Result<ReadOutcome, QString> outcome = m_blocks->next(m_block);
    if (!outcome || *outcome == ReadOutcome::end) {
      return outcome;
    }
  }
  m_bytesDone = m_blocks->offset();
  if (const auto status = convert(m_block, m_block.rowCount(), batch); !status) {
    return Failure{status.error()};
  }
  return ReadOutcome::rows;
}

Status<QString> CsvBatchReader::tryFirstRows() {
  RowBatch batch;
  batch.setColumns(m_columns.types);
  long long rowsLeft = kInferredRows;
  for (const CsvBlock& block : m_held) {
    const long long rowCount = std::min<long long>(block.rowCount(), rowsLeft);
    if (const auto status = convert(block, rowCount, batch); !status) {
      return status;
    }
    rowsLeft -= rowCount;
  }
  m_held.clear();
  return Done{};
}

Status<QString> CsvBatchReader::convert(const CsvBlock& block, long long rowCount,
                                        RowBatch& batch) {
  const std::size_t columnCount = batch.columnCount();
  m_converters.clear();
  for (std::size_t i = 0; i < columnCount; ++i) {
    const DigitRule digits = m_isDeclared[i] ? DigitRule::mayBeLost : DigitRule::mustBeKept;
    m_converters.emplace_back(block, i, digits, batch.column(i));
  }
  // All columns of some rows, so that their bytes are fetched once.
  constexpr long long kRowsAtOnce = 512;
  for (long long begin = 0; begin < rowCount; begin += kRowsAtOnce) {
    std::optional<BadField> first;
    std::size_t columnOfFirst = 0;
    long long end = std::min(rowCount, begin + kRowsAtOnce);
    for (std::size_t i = 0; i < columnCount; ++i) {
      if (auto bad = m_converters[i].convert(begin, end, *m_nulls, m_badFields[i])) {
        end = bad->row;
        first = std::move(bad);
        columnOfFirst = i;
      }
    }
    if (first) {
      return Failure{badFieldText(block, columnOfFirst, *first)};
    }
  }
  batch.setRowCount(rowCount);
  return Done{};
}

QString CsvBatchReader::badFieldText(const CsvBlock& block, std::size_t column,
                                     const BadField& field) const {
  const QString name = m_columns.names[static_cast<qsizetype>(column)];
  const QString location =
      table_messages::inColumn(table_messages::atLine(m_path, block.lineOfRow(field.row)), name);
  const QString value = QString::fromStdString(field.text);
  switch (m_columns.types[column]) {
    case MetaTypeColumn::number:
      return table_messages::atLocation(location, badNumberText(field.text, name));
    case MetaTypeColumn::key:
      return table_messages::atLocation(location, table_messages::badKey(value));
    default:
      return table_messages::atLocation(location, table_messages::notUtf8());
  }
}

float CsvBatchReader::fractionDone() const {
  const long long size = m_file.size();
  return size <= 0 ? -1.0f : static_cast<float>(m_bytesDone) / static_cast<float>(size);
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
    warnings += table_messages::readAsNull(table_messages::atLine(m_path, line),
                                           m_columns.names[static_cast<qsizetype>(column)],
                                           m_badFields[column].count);
  }
  return warnings;
}

}  // namespace kelvarin
