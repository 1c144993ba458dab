#include "host/tables/csv/csv_row_locator.h"

#include <algorithm>

#include "host/tables/csv/messages.h"

namespace kelvarin {

CsvRowLocator::CsvRowLocator(const TextInput& file, const CsvDialect& dialect, const CsvHead& head)
    : m_path(file.path()),
      m_encoding(file.encoding()),
      m_canOpenAgain(file.canOpenAgain()),
      m_dialect(dialect),
      m_hasOneColumn(head.names.size() == 1),
      m_dataOffset(head.dataOffset),
      m_dataLine(head.dataLine) {}

QString CsvRowLocator::locationOfRow(long long row) const {
  const std::optional<long long> line = m_canOpenAgain ? lineOfRow(row) : std::nullopt;
  return line ? table_messages::atLine(m_path, *line)
              : table_messages::atRow(table_messages::fileSource(m_path), row + 1);
}

std::optional<long long> CsvRowLocator::lineOfRow(long long row) const {
  TextInput file;
  if (!file.open(m_path, m_encoding)) {
    return std::nullopt;
  }
  CsvScanner scanner(m_dialect, !m_hasOneColumn, m_dataLine, 0);
  std::vector<char> bytes(1 << 20);
  long long bytesToSkip = m_dataOffset;
  for (long long rowsBefore = 0;;) {
    const auto got = file.readNext(bytes.data(), bytes.size());
    if (!got) {
      return std::nullopt;
    }
    const auto size = static_cast<long long>(got->size);
    const long long skipped = std::min(bytesToSkip, size);
    bytesToSkip -= skipped;
    const char* next = bytes.data() + skipped;
    const char* end = bytes.data() + size;
    while (next < end) {
      if (scanner.scan(next, end) && rowsBefore++ == row) {
        return scanner.record().line;
      }
    }
    if (got->isLast) {
      const bool isLast = scanner.finish() && rowsBefore == row;
      return isLast ? std::optional(scanner.record().line) : std::nullopt;
    }
  }
}

}  // namespace kelvarin
