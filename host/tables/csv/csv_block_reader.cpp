#include "host/tables/csv/csv_block_reader.h"

#include <algorithm>
#include <cstring>

#include "host/tables/csv/messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

constexpr std::size_t kBlockSize = 64 * 1024;

QString shownField(const std::string& field) {
  constexpr std::size_t kMaxBytes = 400;
  return QString::fromUtf8(field.data(), static_cast<qsizetype>(std::min(field.size(), kMaxBytes)));
}

}  // namespace

CsvBlockReader::CsvBlockReader(CsvFile& file, const CsvDialect& dialect, CsvHead& head,
                               const QVector<QString>& columnNames)
    : m_file(file),
      m_dialect(dialect),
      m_columnNames(columnNames),
      m_indexer(dialect, static_cast<std::size_t>(columnNames.size())),
      m_left(std::move(head.bytesRead)),
      m_offset(head.dataOffset),
      m_line(head.dataLine) {}

// The bytes there are in `block`, of which `kept` were there before.
Result<std::size_t, QString> CsvBlockReader::fill(CsvBlock& block, std::size_t kept) {
  if (m_isFileRead) {
    return kept;
  }
  block.reserve(std::max(kBlockSize, 2 * kept), kept);
  const std::size_t wanted = block.capacity() - kept;
  const Result<std::size_t, QString> got = m_file.readNext(block.bytes() + kept, wanted);
  if (!got) {
    return Failure{got.error()};
  }
  m_isFileRead = *got < wanted;
  return kept + *got;
}

Result<ReadOutcome, QString> CsvBlockReader::next(CsvBlock& block) {
  std::size_t size = m_left.size();
  block.reserve(std::max(kBlockSize, size), 0);
  std::memcpy(block.bytes(), m_left.data(), size);
  m_left.clear();
  for (;;) {
    const Result<std::size_t, QString> filled = fill(block, size);
    if (!filled) {
      return Failure{filled.error()};
    }
    size = *filled;
    const CsvIndex index = m_indexer.index(block, size, m_isFileRead);
    const char* rest = block.bytes() + index.bytesUsed;
    const std::size_t restSize = size - index.bytesUsed;
    const long long firstLine = m_line;
    m_line += index.hasRareBytes ? countLineEnds(block.bytes(), index.bytesUsed)
                                 : index.rowCount + index.emptyLines;
    m_offset += static_cast<long long>(index.bytesUsed);
    if (index.rowCount > 0) {
      block.setRows(index.rowCount, static_cast<std::size_t>(m_columnNames.size()), firstLine);
      m_left.assign(rest, restSize);
      return ReadOutcome::rows;
    }
    if (index.hasFault) {
      return Failure{faultText(rest, restSize)};
    }
    if (restSize > static_cast<std::size_t>(kLongestRecord)) {
      return Failure{
          table_messages::atLocation(table_messages::atLine(m_file.path(), m_line),
                                     table_messages::recordTooLong(kLongestRecordMebibytes))};
    }
    if (m_isFileRead) {
      return ReadOutcome::end;
    }
    std::memmove(block.bytes(), rest, restSize);
    size = restSize;
  }
}

// Why the record at `record`, in m_line, is none.
QString CsvBlockReader::faultText(const char* record, std::size_t size) const {
  const auto columns = static_cast<int>(m_columnNames.size());
  const auto keptFields = static_cast<std::size_t>(columns) + 1;
  CsvScanner scanner(m_dialect, columns != 1, m_line, keptFields);
  const char* next = record;
  const bool isWhole = scanner.scan(next, record + size) || m_isFileRead;
  if (next == record + size) {
    scanner.finish();
  }
  const CsvRecord& found = scanner.record();
  const QString path = m_file.path();
  if (found.isQuoteOpen && isWhole) {
    return table_messages::atLocation(table_messages::atLine(path, found.quoteLine),
                                      table_messages::quoteNeverClosed());
  }
  const auto fields = static_cast<int>(found.fieldCount);
  const QString what =
      fields > columns
          ? table_messages::tooManyFields(
                table_messages::fieldCount(fields, isWhole), columns, m_columnNames.last(),
                shownField(found.fields[static_cast<std::size_t>(columns)]))
          : table_messages::tooFewFields(fields, columns, m_columnNames[fields],
                                         shownField(found.fields.back()));
  return table_messages::atLocation(table_messages::atLine(path, found.line), what);
}

}  // namespace kelvarin
