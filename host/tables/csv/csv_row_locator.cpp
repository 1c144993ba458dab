#include "host/tables/csv/csv_row_locator.h"

#include "host/tables/csv/messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

CsvRowLocator::CsvRowLocator(const InputFile& file, const CsvDialect& dialect, const CsvHead& head)
    : m_file(file),
      m_dialect(dialect),
      m_hasOneColumn(head.names.size() == 1),
      m_dataOffset(head.dataOffset),
      m_dataLine(head.dataLine) {}

QString CsvRowLocator::locationOfRow(long long row) const {
  const std::optional<long long> line = m_file.canReadAgain() ? lineOfRow(row) : std::nullopt;
  return line ? table_messages::atLine(m_file.path(), *line)
              : table_messages::atRow(table_messages::fileSource(m_file.path()), row + 1);
}

std::optional<long long> CsvRowLocator::lineOfRow(long long row) const {
  CsvScanner scanner(m_dialect, !m_hasOneColumn, m_dataLine, 0);
  std::vector<char> bytes(1 << 20);
  long long fileOffset = m_dataOffset;
  for (long long rowsBefore = 0;;) {
    const auto got = m_file.readAt(fileOffset, bytes.data(), bytes.size());
    if (!got || *got == 0) {
      const bool isLast = scanner.finish() && rowsBefore == row;
      return isLast ? std::optional(scanner.record().line) : std::nullopt;
    }
    fileOffset += static_cast<long long>(*got);
    const char* next = bytes.data();
    const char* end = next + *got;
    while (next < end) {
      if (scanner.scan(next, end) && rowsBefore++ == row) {
        return scanner.record().line;
      }
    }
  }
}

}  // namespace kelvarin
