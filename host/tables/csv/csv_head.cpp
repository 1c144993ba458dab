#include "host/tables/csv/csv_head.h"

#include <algorithm>

#include <QSet>

#include "host/files/file_signatures.h"
#include "host/tables/csv/csv_field_texts.h"
#include "host/tables/csv/csv_values.h"
#include "host/tables/csv/messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// A file that is no CSV file whatever the settings say; empty when it may be one.
QString kindOfForeignFile(std::string_view start) {
  switch (formatOfSignature(start)) {
    case FileFormat::utf16:
      return table_messages::utf16File();
    case FileFormat::utf32:
      return table_messages::utf32File();
    case FileFormat::compressed:
      return table_messages::compressedFile();
    case FileFormat::archive:
      return table_messages::archiveFile();
    case FileFormat::parquet:
      return table_messages::parquetFile();
    case FileFormat::arrow:
      return table_messages::arrowFile();
    default:
      return {};
  }
}

// Every second byte is zero in UTF-16 without a byte order mark.
bool hasZeroByte(const CsvRecord& record) {
  return std::any_of(record.fields.begin(), record.fields.end(),
                     [](const std::string& field) { return field.find('\0') != field.npos; });
}

// Reads until the first record is complete.
class HeadReader {
 public:
  HeadReader(TextInput& file, const CsvDialect& dialect)
      : m_file(file),
        m_scanner(dialect, true, 1 + dialect.skippedLines, kMaxCsvColumns),
        m_linesToSkip(dialect.skippedLines) {}

  // False: the file has no record.
  Result<bool, QString> readFirstRecord() {
    const Result<std::string_view, QString> signature = m_file.signature();
    if (!signature) {
      return Failure{signature.error()};
    }
    if (const QString kind = kindOfForeignFile(*signature); !kind.isEmpty()) {
      return Failure{table_messages::foreignFile(m_file.path(), kind)};
    }
    for (;;) {
      const Result<ByteStream::Piece, QString> got = readMore();
      if (!got) {
        return Failure{got.error()};
      }
      if (!skipLines()) {
        if (got->isLast || static_cast<long long>(m_bytes.size()) > kLongestRecord) {
          return false;
        }
        continue;
      }
      const char* next = m_bytes.data() + m_used;
      const bool isComplete = m_scanner.scan(next, m_bytes.data() + m_bytes.size());
      const bool isAtEnd = !isComplete && got.value().isLast;
      const bool hasRecord = isComplete || (isAtEnd && m_scanner.finish());
      m_used = static_cast<std::size_t>(next - m_bytes.data());
      if (m_scanner.record().fieldCount > kMaxCsvColumns) {
        return Failure{table_messages::atLocation(
            table_messages::atLine(m_file.path(), m_scanner.record().line),
            table_messages::tooManyColumns(kMaxCsvColumns))};
      }
      if (isComplete) {
        return lookAfterRecord();
      }
      if (isAtEnd) {
        return hasRecord;
      }
      if (static_cast<long long>(m_bytes.size()) > kLongestRecord) {
        return Failure{table_messages::atLocation(
            table_messages::atLine(m_file.path(), m_scanner.record().line),
            table_messages::recordTooLong(kLongestRecordMebibytes))};
      }
    }
  }

  const CsvScanner& scanner() const { return m_scanner; }
  // After the byte order mark and the lines that are passed over.
  std::size_t start() const { return m_start; }
  std::size_t used() const { return m_used; }
  std::string takeBytesFrom(std::size_t offset) { return m_bytes.substr(offset); }

 private:
  static constexpr std::size_t kStep = 64 * 1024;

  Result<ByteStream::Piece, QString> readMore() {
    const std::size_t before = m_bytes.size();
    m_bytes.resize(before + kStep);
    Result<ByteStream::Piece, QString> got = m_file.readNext(m_bytes.data() + before, kStep);
    m_bytes.resize(before + (got ? got->size : 0));
    if (before == 0 && std::string_view(m_bytes).starts_with(kByteOrderMark)) {
      m_start = kByteOrderMark.size();
      m_used = m_start;
    }
    return got;
  }

  // True when the lines that are passed over have been read.
  bool skipLines() {
    while (m_linesToSkip > 0) {
      const std::size_t end = m_bytes.find_first_of("\r\n", m_used);
      const bool isOpen =
          end == m_bytes.npos || (m_bytes[end] == '\r' && end + 1 == m_bytes.size());
      if (isOpen) {
        m_used = std::min(end, m_bytes.size());
        return false;
      }
      m_used = end + (m_bytes.compare(end, 2, "\r\n") == 0 ? 2 : 1);
      m_start = m_used;
      --m_linesToSkip;
    }
    return true;
  }

  // At least one byte of data is there, if the file has any, and a CR LF is used up as a whole.
  Result<bool, QString> lookAfterRecord() {
    if (m_used < m_bytes.size()) {
      return true;
    }
    const bool endsInReturn = m_bytes.back() == '\r';
    const Result<ByteStream::Piece, QString> got = readMore();
    if (!got) {
      return Failure{got.error()};
    }
    m_used += endsInReturn && got.value().size > 0 && m_bytes[m_used] == '\n' ? 1 : 0;
    return true;
  }

  TextInput& m_file;
  CsvScanner m_scanner;
  std::string m_bytes;
  std::size_t m_start = 0;
  std::size_t m_used = 0;
  int m_linesToSkip;
};

// Columns without a name get one that no other column has.
Status<QString> nameColumns(TextInput& file, const CsvRecord& record, CsvHead& head) {
  QSet<QString> known;
  for (const std::string& field : record.fields) {
    if (!isUtf8(field)) {
      return Failure{table_messages::atLocation(table_messages::atLine(file.path(), record.line),
                                                noTextText(file.encoding()))};
    }
    const QString name = QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size()));
    if (known.contains(name)) {
      return Failure{
          table_messages::duplicateColumn(table_messages::fileSource(file.path()), name)};
    }
    if (!name.isEmpty()) {
      known.insert(name);
    }
    head.names.append(name);
  }
  int unnamed = 0;
  QString firstGiven;
  for (qsizetype i = 0; i < head.names.size(); ++i) {
    if (!head.names[i].isEmpty()) {
      continue;
    }
    QString given = generatedColumnName(i);
    while (known.contains(given)) {
      given += u'_';
    }
    known.insert(given);
    head.names[i] = given;
    firstGiven = unnamed++ == 0 ? given : firstGiven;
  }
  if (unnamed > 0) {
    head.notes += table_messages::atLocation(table_messages::atLine(file.path(), record.line),
                                             table_messages::unnamedColumns(unnamed, firstGiven));
  }
  return Done{};
}

// A header of one column that looks like several.
void noteOtherSeparator(TextInput& file, const CsvRecord& record, CsvHead& head) {
  if (record.fieldCount != 1) {
    return;
  }
  static constexpr std::pair<char, const char*> kOthers[] = {
      {';', ";"}, {'\t', "\\t"}, {'|', "|"}, {',', ","}};
  for (const auto& [separator, attribute] : kOthers) {
    if (record.fields[0].find(separator) != std::string::npos) {
      head.notes += table_messages::atLocation(
          table_messages::atLine(file.path(), record.line),
          table_messages::otherSeparator(QString::fromLatin1(attribute)));
      return;
    }
  }
}

}  // namespace

QString generatedColumnName(qsizetype column) {
  return QStringLiteral("col%1").arg(column + 1);
}

Result<CsvHead, QString> readCsvHead(TextInput& file, const CsvDialect& dialect) {
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
    return Failure{table_messages::atLocation(table_messages::atLine(file.path(), record.quoteLine),
                                              table_messages::quoteNeverClosed())};
  }
  if (hasZeroByte(record)) {
    return Failure{table_messages::foreignFile(file.path(), table_messages::hasZeroBytes())};
  }
  noteOtherSeparator(file, record, head);
  std::size_t dataStart = reader.start();
  head.dataLine = 1 + dialect.skippedLines;
  if (dialect.hasHeader) {
    if (const auto status = nameColumns(file, record, head); !status) {
      return Failure{status.error()};
    }
    dataStart = reader.used();
    head.dataLine = reader.scanner().line();
  } else {
    for (std::size_t i = 0; i < record.fieldCount; ++i) {
      head.names.append(generatedColumnName(static_cast<qsizetype>(i)));
    }
  }
  head.dataOffset = static_cast<long long>(dataStart);
  head.bytesRead = reader.takeBytesFrom(dataStart);
  return head;
}

}  // namespace kelvarin
