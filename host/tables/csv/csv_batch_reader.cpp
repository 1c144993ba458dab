#include "host/tables/csv/csv_batch_reader.h"

#include <algorithm>

#include "arrow/csv/options.h"
#include "arrow/io/interfaces.h"
#include "arrow/type.h"
#include "host/tables/messages.h"

namespace kelvarin {

namespace {

constexpr long long kInferredRows = 10000;
constexpr int kBlockGrowth = 8;
// Room for the longest record wherever in a block it begins.
constexpr int kLargestBlockSize = 512 << 20;

const arrow::BinaryArray& fieldsOf(const arrow::RecordBatch& batch, std::size_t column) {
  return static_cast<const arrow::BinaryArray&>(*batch.column(static_cast<int>(column)));
}

arrow::csv::ParseOptions parseOptions(const CsvDialect& dialect, bool hasOneColumn) {
  auto options = arrow::csv::ParseOptions::Defaults();
  options.delimiter = dialect.separator;
  options.quoting = dialect.hasQuote;
  options.quote_char = dialect.quote;
  options.newlines_in_values = dialect.hasQuote;
  options.ignore_empty_lines = !hasOneColumn;
  return options;
}

// An empty line of a file with one column is a missing value, whatever the null text.
arrow::csv::ConvertOptions convertOptions(const CsvDialect& dialect, bool hasOneColumn) {
  auto options = arrow::csv::ConvertOptions::Defaults();
  options.check_utf8 = false;
  options.strings_can_be_null = true;
  options.quoted_strings_can_be_null = false;
  options.null_values = {dialect.nullText};
  if (hasOneColumn && !dialect.nullText.empty()) {
    options.null_values.emplace_back();
  }
  return options;
}

// A record did not end in the block after the one in which it began.
bool isRecordLongerThanBlock(const arrow::Status& status) {
  return status.IsInvalid() && status.message().find("straddl") != std::string::npos;
}

// Nothing but empty lines was left.
bool hasNoRecords(const arrow::Status& status) {
  return status.IsInvalid() && status.message().find("Empty CSV file") != std::string::npos;
}

}  // namespace

CsvBatchReader::CsvBatchReader(const QString& path, CsvReadSettings settings)
    : m_path(path), m_file(std::make_shared<CsvFile>()), m_settings(std::move(settings)) {}

Result<TableColumns, QString> CsvBatchReader::open() {
  if (const auto status = m_file->open(m_path); !status) {
    return Failure{status.error()};
  }
  Result<CsvHead, QString> head = readCsvHead(*m_file, m_settings.dialect);
  if (!head) {
    return Failure{head.error()};
  }
  m_head = std::move(*head);
  if (const auto status = settleColumns(); !status) {
    return Failure{status.error()};
  }
  m_places = std::make_unique<CsvPlaces>(*m_file, m_settings.dialect, m_head);
  m_isAtEnd = !m_head.hasData;
  m_offset = m_head.dataOffset;
  if (const auto status = inferTypes(); !status) {
    return Failure{status.error()};
  }
  return m_columns;
}

// Declared columns name the columns of a file without header in order, unless they use the
// generated names.
Status<QString> CsvBatchReader::settleColumns() {
  QVector<QString>& names = m_head.names;
  const auto isKnown = [&](const DeclaredColumn& column) { return names.contains(column.name); };
  const auto& declared = m_settings.columns;
  const auto declaredCount = static_cast<qsizetype>(declared.size());
  if (!m_settings.dialect.hasHeader && !std::all_of(declared.begin(), declared.end(), isKnown)) {
    if (names.isEmpty()) {
      names.resize(declaredCount);
    }
    if (declaredCount > names.size()) {
      return Failure{table_messages::tooManyDeclared(m_path, declaredCount, names.size())};
    }
    for (qsizetype i = 0; i < declaredCount; ++i) {
      names[i] = declared[static_cast<std::size_t>(i)].name;
    }
  }
  if (names.isEmpty()) {
    return Failure{table_messages::noColumns(m_path)};
  }
  const auto columnCount = static_cast<std::size_t>(names.size());
  m_columns.names = names;
  m_columns.types.assign(columnCount, MetaTypeColumn::text);
  m_isDeclared.assign(columnCount, false);
  m_badFields.assign(columnCount, BadFieldCount{m_settings.areBadValuesNull, 0, -1});
  for (const DeclaredColumn& column : declared) {
    const qsizetype index = names.indexOf(column.name);
    if (index < 0) {
      return Failure{table_messages::declaredColumnAbsent(
          m_path, column.name, QStringList(names.toList()).join(QStringLiteral(", ")))};
    }
    m_columns.types[static_cast<std::size_t>(index)] = column.type;
    m_isDeclared[static_cast<std::size_t>(index)] = true;
  }
  return Done{};
}

arrow::Status CsvBatchReader::openReader() {
  const bool hasOneColumn = m_columns.names.size() == 1;
  m_readerOffset = m_offset;
  m_lastBatchOffset = m_offset;
  if (m_file->canReadAgain()) {
    m_stream = std::make_shared<CsvStream>(m_file, m_settings.dialect, m_offset);
  } else {
    m_stream = std::make_shared<CsvStream>(m_file, m_settings.dialect, m_head.dataLine,
                                           std::move(m_head.bytesRead));
  }
  auto read = arrow::csv::ReadOptions::Defaults();
  read.use_threads = false;
  read.block_size = m_blockSize;
  auto convert = convertOptions(m_settings.dialect, hasOneColumn);
  for (const QString& name : m_columns.names) {
    read.column_names.push_back(name.toStdString());
    convert.column_types[read.column_names.back()] = arrow::binary();
  }
  return arrow::csv::StreamingReader::Make(arrow::io::default_io_context(), m_stream, read,
                                           parseOptions(m_settings.dialect, hasOneColumn), convert)
      .Value(&m_reader);
}

// Null at the end.
arrow::Status CsvBatchReader::readRawBatch(RawBatch& raw) {
  raw.reset();
  if (!m_reader) {
    ARROW_RETURN_NOT_OK(openReader());
  }
  return m_reader->ReadNext(&raw);
}

Result<CsvBatchReader::RawBatch, QString> CsvBatchReader::nextRawBatch() {
  RawBatch raw;
  while (!m_isAtEnd) {
    const arrow::Status status = readRawBatch(raw);
    if (status.ok() && raw) {
      m_lastBatchOffset = m_offset;
      m_offset = m_readerOffset + m_reader->bytes_read();
      m_bytesDone = m_offset;
      return raw;
    }
    const bool mayGrow = m_file->canReadAgain() && m_blockSize < kLargestBlockSize;
    if (isRecordLongerThanBlock(status) && mayGrow) {
      m_blockSize *= kBlockGrowth;
      m_reader.reset();
      continue;
    }
    m_isAtEnd = true;
    m_reader.reset();
    const QString error = status.ok() || hasNoRecords(status) ? errorAtEnd() : readerError(status);
    if (!error.isEmpty()) {
      return Failure{error};
    }
  }
  return RawBatch();
}

// The streaming reader takes an open quote at the end for a closed one.
QString CsvBatchReader::errorAtEnd() const {
  if (!m_stream->hasSeenQuote()) {
    return {};
  }
  if (m_file->canReadAgain()) {
    return m_places->endsInsideQuote(m_lastBatchOffset) ? m_places->firstFault() : QString();
  }
  const long long line = m_stream->openQuoteLine();
  return line == 0 ? QString()
                   : table_messages::atPlace(table_messages::atLine(m_path, line),
                                             table_messages::quoteNeverClosed());
}

QString CsvBatchReader::readerError(const arrow::Status& status) const {
  const QString text = QString::fromStdString(status.message());
  if (status.IsIOError()) {
    return text;
  }
  const QString fault = m_places->firstFault();
  if (!fault.isEmpty()) {
    return fault;
  }
  return table_messages::cannotRead(
      m_path, isRecordLongerThanBlock(status) ? table_messages::recordTooLongForPipe() : text);
}

Status<QString> CsvBatchReader::inferTypes() {
  std::vector<TypeInference> inferences(m_columns.types.size());
  for (long long rows = 0; rows < kInferredRows;) {
    const Result<RawBatch, QString> raw = nextRawBatch();
    if (!raw) {
      return Failure{raw.error()};
    }
    if (*raw == nullptr) {
      break;
    }
    for (std::size_t i = 0; i < inferences.size(); ++i) {
      inferences[i].look(fieldsOf(**raw, i), kInferredRows - rows);
    }
    rows += (*raw)->num_rows();
    m_held.push_back(*raw);
  }
  for (std::size_t i = 0; i < inferences.size(); ++i) {
    if (!m_isDeclared[i]) {
      m_columns.types[i] = inferences[i].type();
    }
  }
  return Done{};
}

Result<ReadOutcome, QString> CsvBatchReader::next(RowBatch& batch) {
  RawBatch raw;
  if (m_heldGiven < m_held.size()) {
    raw = std::move(m_held[m_heldGiven++]);
  } else {
    Result<RawBatch, QString> read = nextRawBatch();
    if (!read) {
      return Failure{read.error()};
    }
    raw = std::move(*read);
  }
  if (!raw) {
    return ReadOutcome::end;
  }
  if (const auto status = convert(*raw, batch); !status) {
    return Failure{status.error()};
  }
  return ReadOutcome::rows;
}

Status<QString> CsvBatchReader::convert(const arrow::RecordBatch& raw, RowBatch& batch) {
  for (std::size_t i = 0; i < batch.columnCount(); ++i) {
    const arrow::BinaryArray& fields = fieldsOf(raw, i);
    const auto bad = convertFields(fields, m_rowsGiven, batch.column(i), m_badFields[i]);
    if (bad) {
      const QString value =
          QString::fromUtf8(bad->value.data(), static_cast<qsizetype>(bad->value.size()));
      return Failure{table_messages::atPlace(columnPlace(m_rowsGiven + bad->row, i),
                                             m_columns.types[i] == MetaTypeColumn::key
                                                 ? table_messages::badKey(value)
                                                 : table_messages::badNumber(value))};
    }
    if (m_columns.types[i] == MetaTypeColumn::text) {
      if (const auto row = firstTextNotUtf8(fields)) {
        return Failure{
            table_messages::atPlace(columnPlace(m_rowsGiven + *row, i), table_messages::notUtf8())};
      }
    }
  }
  batch.setRowCount(raw.num_rows());
  m_rowsGiven += raw.num_rows();
  return Done{};
}

QString CsvBatchReader::columnPlace(long long row, std::size_t column) const {
  return table_messages::inColumn(m_places->placeOfRow(row),
                                  m_columns.names[static_cast<qsizetype>(column)]);
}

float CsvBatchReader::fractionDone() const {
  const long long size = m_file->size();
  return size <= 0 ? -1.0f : static_cast<float>(m_bytesDone) / static_cast<float>(size);
}

QString CsvBatchReader::placeOfRow(long long row) const {
  return m_places->placeOfRow(row);
}

QStringList CsvBatchReader::warnings() const {
  std::vector<std::pair<long long, std::size_t>> columnsByRow;
  for (std::size_t i = 0; i < m_badFields.size(); ++i) {
    if (m_badFields[i].count > 0) {
      columnsByRow.emplace_back(m_badFields[i].firstRow, i);
    }
  }
  std::sort(columnsByRow.begin(), columnsByRow.end());
  std::vector<long long> rows;
  for (const auto& [row, column] : columnsByRow) {
    rows.push_back(row);
  }
  const QStringList places = rows.empty() ? QStringList() : m_places->placesOfRows(rows);
  QStringList warnings;
  for (qsizetype i = 0; i < places.size(); ++i) {
    const std::size_t column = columnsByRow[static_cast<std::size_t>(i)].second;
    warnings += table_messages::readAsNull(
        places[i], m_columns.names[static_cast<qsizetype>(column)], m_badFields[column].count);
  }
  return warnings;
}

}  // namespace kelvarin
