#include "host/tables/csv/csv_head.h"

#include <QSet>

#include "host/tables/csv/csv_values.h"
#include "host/tables/messages.h"

namespace kelvarin {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Reads until the first record is complete.
class HeadReader {
 public:
  HeadReader(const CsvFile& file, const CsvDialect& dialect)
      : m_file(file), m_scanner(dialect, true, 1) {}

  // False: the file has no record.
  Result<bool, QString> readFirstRecord() {
    for (;;) {
      const Result<std::size_t, QString> got = readMore();
      if (!got) {
        return Failure{got.error()};
      }
      const char* next = m_bytes.data() + m_used;
      const bool isComplete = m_scanner.scan(next, m_bytes.data() + m_bytes.size());
      m_used = static_cast<std::size_t>(next - m_bytes.data());
      if (isComplete) {
        return lookAfterRecord();
      }
      if (*got < kStep) {
        return m_scanner.finish();
      }
      if (static_cast<long long>(m_bytes.size()) > kLongestRecord) {
        return Failure{
            table_messages::atPlace(table_messages::atLine(m_file.path(), m_scanner.record().line),
                                    table_messages::recordTooLong(kLongestRecordMebibytes))};
      }
    }
  }

  const CsvScanner& scanner() const { return m_scanner; }
  std::size_t start() const { return m_start; }  // after the byte order mark
  std::size_t used() const { return m_used; }
  std::string takeBytesFrom(std::size_t offset) { return m_bytes.substr(offset); }

 private:
  static constexpr std::size_t kStep = 64 * 1024;

  Result<std::size_t, QString> readMore() {
    const std::size_t before = m_bytes.size();
    m_bytes.resize(before + kStep);
    Result<std::size_t, QString> got = m_file.readNext(m_bytes.data() + before, kStep);
    m_bytes.resize(before + (got ? *got : 0));
    if (before == 0 && std::string_view(m_bytes).starts_with(kByteOrderMark)) {
      m_start = kByteOrderMark.size();
      m_used = m_start;
    }
    return got;
  }

  // At least one byte of data is there, if the file has any, and a CR LF is used up as a whole.
  Result<bool, QString> lookAfterRecord() {
    if (m_used < m_bytes.size()) {
      return true;
    }
    const bool endsInReturn = m_bytes.back() == '\r';
    const Result<std::size_t, QString> got = readMore();
    if (!got) {
      return Failure{got.error()};
    }
    m_used += endsInReturn && *got > 0 && m_bytes[m_used] == '\n' ? 1 : 0;
    return true;
  }

  const CsvFile& m_file;
  CsvScanner m_scanner;
  std::string m_bytes;
  std::size_t m_start = 0;
  std::size_t m_used = 0;
};

Result<QVector<QString>, QString> namesOfHeader(const CsvFile& file, const CsvRecord& record) {
  QVector<QString> names;
  QSet<QString> known;
  for (const std::string& field : record.fields) {
    if (!isUtf8(field)) {
      return Failure{table_messages::atPlace(table_messages::atLine(file.path(), record.line),
                                             table_messages::notUtf8())};
    }
    const QString name =
        field.empty() ? generatedColumnName(names.size())
                      : QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size()));
    if (known.contains(name)) {
      return Failure{table_messages::duplicateColumn(file.path(), name)};
    }
    known.insert(name);
    names.append(name);
  }
  return names;
}

}  // namespace

QString generatedColumnName(qsizetype column) {
  return QStringLiteral("col%1").arg(column + 1);
}

Result<CsvHead, QString> readCsvHead(const CsvFile& file, const CsvDialect& dialect) {
  HeadReader reader(file, dialect);
  const Result<bool, QString> hasRecord = reader.readFirstRecord();
  if (!hasRecord) {
    return Failure{hasRecord.error()};
  }
  CsvHead head;
  if (!*hasRecord) {
    return head;
  }
  const CsvRecord& record = reader.scanner().record();
  if (record.isQuoteOpen) {
    return Failure{table_messages::atPlace(table_messages::atLine(file.path(), record.quoteLine),
                                           table_messages::quoteNeverClosed())};
  }
  std::size_t dataStart = reader.start();
  if (dialect.hasHeader) {
    Result<QVector<QString>, QString> names = namesOfHeader(file, record);
    if (!names) {
      return Failure{names.error()};
    }
    head.names = std::move(*names);
    dataStart = reader.used();
    head.dataLine = reader.scanner().line();
  } else {
    for (std::size_t i = 0; i < record.fields.size(); ++i) {
      head.names.append(generatedColumnName(static_cast<qsizetype>(i)));
    }
  }
  head.dataOffset = static_cast<long long>(dataStart);
  head.bytesRead = reader.takeBytesFrom(dataStart);
  return head;
}

}  // namespace kelvarin
