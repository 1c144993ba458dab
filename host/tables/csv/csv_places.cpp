#include "host/tables/csv/csv_places.h"

#include "host/tables/messages.h"

namespace kelvarin {

namespace {

QString shownField(const std::string& field) {
  return QString::fromUtf8(field.data(),
                           static_cast<qsizetype>(std::min<std::size_t>(field.size(), 400)));
}

}  // namespace

CsvPlaces::CsvPlaces(const CsvFile& file, const CsvDialect& dialect, const CsvHead& head)
    : m_file(file),
      m_dialect(dialect),
      m_names(head.names),
      m_dataOffset(head.dataOffset),
      m_dataLine(head.dataLine) {}

// Calls `visitor` with each record until it answers false; an unfinished record too long to be one
// ends the visit.
template <typename Visitor>
void CsvPlaces::visitRecords(long long offset, Visitor visitor) const {
  CsvScanner scanner(m_dialect, m_names.size() != 1, m_dataLine);
  std::vector<char> bytes(1 << 20);
  long long fileOffset = offset;
  for (;;) {
    const auto got = m_file.readAt(fileOffset, bytes.data(), bytes.size());
    if (!got || *got == 0) {
      if (scanner.finish()) {
        visitor(scanner.record());
      }
      return;
    }
    fileOffset += static_cast<long long>(*got);
    const char* next = bytes.data();
    const char* end = next + *got;
    while (next < end) {
      if (scanner.scan(next, end) && !visitor(scanner.record())) {
        return;
      }
    }
  }
}

QString CsvPlaces::placeOfRow(long long row) const {
  return placesOfRows({row}).value(0);
}

QStringList CsvPlaces::placesOfRows(const std::vector<long long>& rows) const {
  QStringList places;
  if (m_file.canReadAgain() && !rows.empty()) {
    long long current = 0;
    visitRecords(m_dataOffset, [&](const CsvRecord& record) {
      while (static_cast<std::size_t>(places.size()) < rows.size() &&
             rows[static_cast<std::size_t>(places.size())] == current) {
        places += table_messages::atLine(m_file.path(), record.line);
      }
      ++current;
      return static_cast<std::size_t>(places.size()) < rows.size();
    });
  }
  while (static_cast<std::size_t>(places.size()) < rows.size()) {
    places +=
        table_messages::atRow(m_file.path(), rows[static_cast<std::size_t>(places.size())] + 1);
  }
  return places;
}

QString CsvPlaces::faultOf(const CsvRecord& record) const {
  if (record.isQuoteOpen) {
    return table_messages::atPlace(table_messages::atLine(m_file.path(), record.quoteLine),
                                   table_messages::quoteNeverClosed());
  }
  const QString place = table_messages::atLine(m_file.path(), record.line);
  if (record.byteCount > kLongestRecord) {
    return table_messages::atPlace(place, table_messages::recordTooLong(kLongestRecordMebibytes));
  }
  const int fields = static_cast<int>(record.fields.size());
  const int columns = static_cast<int>(m_names.size());
  if (fields > columns) {
    return table_messages::atPlace(
        place, table_messages::tooManyFields(
                   fields, columns, m_names.last(),
                   shownField(record.fields[static_cast<std::size_t>(columns)])));
  }
  if (fields < columns) {
    return table_messages::atPlace(place,
                                   table_messages::tooFewFields(fields, columns, m_names[fields],
                                                                shownField(record.fields.back())));
  }
  return {};
}

QString CsvPlaces::firstFault() const {
  QString fault;
  if (m_file.canReadAgain()) {
    visitRecords(m_dataOffset, [&](const CsvRecord& record) {
      fault = faultOf(record);
      return fault.isEmpty();
    });
  }
  return fault;
}

bool CsvPlaces::endsInsideQuote(long long offset) const {
  bool isOpen = false;
  visitRecords(offset, [&](const CsvRecord& record) {
    isOpen = record.isQuoteOpen;
    return true;
  });
  return isOpen;
}

}  // namespace kelvarin
