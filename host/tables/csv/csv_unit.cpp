#include "host/tables/csv/csv_unit.h"

#include <algorithm>

#include "host/tables/csv/csv_field_texts.h"
#include "host/tables/csv/csv_scanner.h"
#include "host/tables/csv/messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

// Blocks that have grown for a long record are not kept.
constexpr std::size_t kLargestKeptBlock = 4 * CsvUnitReader::kUnitSize;

BatchColumn columnOfSameText(const std::string& text, std::size_t rowCount) {
  const std::size_t size = text.size() + 4;
  ColumnMemory memory(MetaTypeColumn::text, rowCount, size);
  std::fill_n(memory.positions(), rowCount, 0);
  putText(memory.texts(), text.data(), text.size());
  return memory.column(size);
}

QString shownField(const std::string& field) {
  constexpr std::size_t kMaxBytes = 400;
  return QString::fromUtf8(field.data(), static_cast<qsizetype>(std::min(field.size(), kMaxBytes)));
}

}  // namespace

CsvUnit::CsvUnit(std::shared_ptr<const CsvTable> table, CsvPiece piece)
    : m_table(std::move(table)), m_piece(std::move(piece)), m_size(m_piece.size) {}

void CsvUnit::index() {
  CsvBlock& block = m_piece.block;
  const auto columnCount = static_cast<std::size_t>(m_table->columns.names.size());
  const CsvIndex index =
      CsvIndexer(m_table->dialect, columnCount).index(block, m_size, m_piece.isWhole);
  block.setRows(index.rowCount, columnCount);
  m_lineCount = index.hasRareBytes ? countLineEnds(block.bytes(), index.bytesUsed)
                                   : index.rowCount + index.emptyLines;
  if (index.hasFault) {
    m_fault = faultOfRecord(block.bytes() + index.bytesUsed, m_size - index.bytesUsed, m_lineCount);
  } else if (!m_piece.isWhole) {
    m_fault = Fault{m_lineCount, {}, table_messages::recordTooLong(kLongestRecordMebibytes)};
  }
  m_isIndexed = true;
}

// Why the record in that line of the unit is none.
CsvUnit::Fault CsvUnit::faultOfRecord(const char* record, std::size_t size, long long line) const {
  const QVector<QString>& names = m_table->columns.names;
  const auto columns = static_cast<int>(names.size());
  const auto keptFields = static_cast<std::size_t>(columns) + 1;
  CsvScanner scanner(m_table->dialect, columns != 1, line, keptFields);
  const char* next = record;
  const bool isWhole = scanner.scan(next, record + size) || m_piece.isLast;
  if (next == record + size) {
    scanner.finish();
  }
  const CsvRecord& found = scanner.record();
  if (found.isQuoteOpen && isWhole) {
    return {found.quoteLine, {}, table_messages::quoteNeverClosed()};
  }
  const auto fields = static_cast<int>(found.fieldCount);
  if (fields > columns) {
    return {found.line,
            {},
            table_messages::tooManyFields(
                table_messages::fieldCount(fields, isWhole), columns, names.last(),
                shownField(found.fields[static_cast<std::size_t>(columns)]))};
  }
  return {found.line,
          {},
          table_messages::tooFewFields(fields, columns, names[fields],
                                       shownField(found.fields.back()))};
}

void CsvUnit::parseFirst(long long rowCount) {
  if (!m_isIndexed) {
    index();
  }
  if (rowCount <= m_piece.block.rowCount()) {
    m_fault.reset();
  }
  convert(std::min(rowCount, m_piece.block.rowCount()));
  if (m_piece.block.capacity() <= kLargestKeptBlock) {
    m_table->blocks->giveBack(std::move(m_piece.block));
  }
}

void CsvUnit::convert(long long rowCount) {
  const std::vector<MetaTypeColumn>& types = m_table->columns.types;
  const std::size_t columnCount = types.size();
  const std::vector<std::size_t>& order = m_table->order;
  std::vector<FieldConverter> converters;
  converters.reserve(order.size());
  for (const std::size_t i : order) {
    const DigitRule digits = m_table->isDeclared[i] ? DigitRule::mayBeLost : DigitRule::mustBeKept;
    converters.emplace_back(m_piece.block, i, types[i], digits, rowCount);
  }
  if (m_table->areBadValuesNull) {
    m_badFields.resize(columnCount);
  }
  // All columns of some rows, so that their bytes are fetched once.
  constexpr long long kRowsAtOnce = 512;
  long long done = 0;
  while (done < rowCount) {
    long long end = std::min(rowCount, done + kRowsAtOnce);
    for (std::size_t i = 0; i < converters.size(); ++i) {
      BadFieldCount* tolerated = m_badFields.empty() ? nullptr : &m_badFields[order[i]];
      if (const auto bad = converters[i].convert(done, end, *m_table->rules, tolerated)) {
        end = bad->row;
        rowCount = end;
        m_fault = faultOfField(order[i], *bad);
      }
    }
    done = end;
  }
  if (done == 0) {
    return;
  }
  m_batch = std::make_shared<RowBatch>(static_cast<std::size_t>(done), columnsOf(converters, done));
}

std::vector<BatchColumn> CsvUnit::columnsOf(const std::vector<FieldConverter>& converters,
                                            long long rowCount) const {
  std::vector<BatchColumn> columns;
  columns.reserve(converters.size() + 1);
  for (const FieldConverter& converter : converters) {
    columns.push_back(converter.column());
  }
  if (m_table->fileName) {
    columns.push_back(columnOfSameText(*m_table->fileName, static_cast<std::size_t>(rowCount)));
  }
  return columns;
}

CsvUnit::Fault CsvUnit::faultOfField(std::size_t column, const BadField& field) const {
  const QString name = m_table->columns.names[static_cast<qsizetype>(column)];
  return {m_piece.block.linesBefore(field.row), name,
          badFieldText(m_table->columns.types[column], field.text, name, m_table->dialect.numbers,
                       m_table->encoding)};
}

void CsvUnit::settle(long long firstLine) {
  m_failure = m_piece.failure;
  if (!m_fault) {
    return;
  }
  const QString line = table_messages::atLine(m_table->path, firstLine + m_fault->line);
  m_failure = table_messages::atLocation(
      m_fault->column.isNull() ? line : table_messages::inColumn(line, m_fault->column),
      m_fault->what);
}

}  // namespace kelvarin
