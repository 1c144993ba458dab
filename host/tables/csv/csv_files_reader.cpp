#include "host/tables/csv/csv_files_reader.h"

#include <glob.h>

#include <algorithm>

#include <QFile>
#include <QFileInfo>

namespace kelvarin {

// A file that could not be opened.
class CsvFilesReader::FailedUnit final : public TableUnit {
 public:
  explicit FailedUnit(QString failure) { m_failure = std::move(failure); }
  void parse() override {}
  std::size_t byteCount() const override { return 0; }
};

bool isFilePattern(const QString& path) {
  return path.contains(u'*') || path.contains(u'?') || path.contains(u'[');
}

QStringList filesOfPattern(const QString& pattern) {
  if (!isFilePattern(pattern) || QFileInfo::exists(pattern)) {
    return {};
  }
  glob_t found{};
  std::vector<QByteArray> paths;
  if (::glob(QFile::encodeName(pattern).constData(), GLOB_NOSORT | GLOB_NOESCAPE, nullptr,
             &found) == 0) {
    paths.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
  }
  ::globfree(&found);
  std::ranges::sort(paths);
  QStringList files;
  for (const QByteArray& path : paths) {
    const QString file = QFile::decodeName(path);
    if (QFileInfo(file).isFile()) {
      files += file;
    }
  }
  return files;
}

CsvFilesReader::CsvFilesReader(std::vector<File> files, CsvFileSettings settings, ColumnRules rules)
    : m_files(std::move(files)),
      m_settings(std::move(settings)),
      m_rules(std::move(rules)),
      m_readers(m_files.size()),
      m_rows(m_files.size(), 0) {}

std::unique_ptr<CsvBatchReader> CsvFilesReader::newReader(std::size_t index) const {
  auto reader = std::make_unique<CsvBatchReader>(m_files[index].path, m_settings, m_rules);
  reader->setFileName(m_files[index].name);
  if (m_isCountOnly) {
    reader->countOnly();
  }
  if (index > 0) {
    reader->follow(*m_readers.front(), index);
  }
  return reader;
}

Result<TableColumns, QString> CsvFilesReader::open(IsStopped isStopped) {
  m_isStopped = std::move(isStopped);
  m_readers.front() = newReader(0);
  Result<TableColumns, QString> columns = m_readers.front()->open(m_isStopped);
  m_notes = m_readers.front()->notes();
  for (std::size_t i = 1; i < m_files.size() && columns; ++i) {
    const std::unique_ptr<CsvBatchReader> reader = newReader(i);
    if (const auto other = reader->open(m_isStopped); !other) {
      return Failure{other.error()};
    }
    const bool isAlike = reader->hasDialectOf(*m_readers.front());
    m_notes += isAlike ? QStringList() : QStringList(reader->dialectInWords());
  }
  return columns;
}

std::unique_ptr<TableUnit> CsvFilesReader::readUnit() {
  while (!m_hasEnded) {
    if (std::unique_ptr<TableUnit> unit = m_readers[m_current]->readUnit()) {
      return unit;
    }
    m_readers[m_current]->close();
    m_hasEnded = ++m_current == m_files.size();
    if (m_hasEnded) {
      break;
    }
    m_readers[m_current] = newReader(m_current);
    if (const auto columns = m_readers[m_current]->open(m_isStopped); !columns) {
      m_hasEnded = true;
      return std::make_unique<FailedUnit>(columns.error());
    }
  }
  return nullptr;
}

void CsvFilesReader::accept(TableUnit& unit) {
  auto* accepted = dynamic_cast<CsvUnit*>(&unit);
  if (accepted == nullptr) {
    return;
  }
  const std::size_t file = accepted->fileIndex();
  m_readers[file]->accept(unit);
  m_rows[file] += unit.batch() == nullptr ? 0 : static_cast<long long>(unit.batch()->rowCount());
  m_accepted = file;
}

float CsvFilesReader::fractionDone() const {
  return static_cast<float>(m_accepted) / static_cast<float>(m_files.size());
}

QString CsvFilesReader::locationOfRow(long long row) const {
  std::size_t file = 0;
  for (; file < m_accepted && row >= m_rows[file]; ++file) {
    row -= m_rows[file];
  }
  return m_readers[file]->locationOfRow(row);
}

QStringList CsvFilesReader::warnings() const {
  QStringList warnings;
  for (std::size_t i = 0; i <= m_accepted; ++i) {
    warnings += m_readers[i]->warnings();
  }
  return warnings;
}

}  // namespace kelvarin
