#include "host/tables/files/table_source.h"

#include "host/contract/attribute_table.h"
#include "host/contract/log_details.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

constexpr char16_t kFile[] = u"file";
const QString kStandardInput = QStringLiteral("-");

}  // namespace

AttributeDescription TableSource::describedFile() {
  return {
      QString::fromUtf16(kFile), AttributeKind::text,
      QStringLiteral("the file; - is standard input; relative names start at the graph's folder"),
      QStringLiteral("")};
}

TableSource::TableSource(XMLNode node, GlobalParameters* parameters)
    : ReaderSource(node, parameters) {
  readAttribute(node, kFile, m_file, parameters);
}

void TableSource::saveHead(std::wostringstream& out, const QString& name) const {
  saveAI(out, name, 1.0);
  if (!m_file.isEmpty()) {
    writeAttribute(out, kFile, m_file);
  }
}

char TableSource::init() {
  ReaderSource::init();
  if (m_file.isEmpty()) {
    endWithError(table_messages::noFileGiven(QLatin1String(typeName())));
    return 1;
  }
  if (mustComputeFull()) {
    m_names.giveBack();
    for (const UsedFile& file : usedFiles()) {
      if (const auto hindrance = m_names.claim(*this, file)) {
        endWithError(*hindrance);
        return 1;
      }
    }
  }
  return 0;
}

QList<UsedFile> TableSource::usedFiles() const {
  if (m_file.isEmpty()) {
    return {};
  }
  const QString file = expandedFile();
  const QString path = file == kStandardInput ? QStringLiteral("/dev/stdin") : file;
  return {{.path = path, .use = FileUse::reads, .companions = {}}};
}

QString TableSource::expandedFile() const {
  const QString name = expandString(m_file);
  return name == kStandardInput ? name : expandFile(m_file);
}

char TableSource::close() {
  m_names.giveBack();
  return ReaderSource::close();
}

Result<std::unique_ptr<BatchReader>, QString> TableSource::makeReader() {
  return makeReaderOf(expandedFile());
}

Result<QVector<SortInfos>, QString> TableSource::declaredOrder(
    const PinOutMetaData& columns) const {
  return parseSortOrder(m_sortedOn, columns);
}

void TableSource::explainFailureToOpen() const {
  const QString path = expandedFile();
  if (path == kStandardInput) {
    return;
  }
  QString hint = missingFileHint(path);
  if (hint.isEmpty() && format() != FileFormat::csv) {  // its reader's errors name other formats
    hint = foreignFormatHint(path, format());
  }
  if (!hint.isEmpty()) {
    logExplanation(hint);
  }
}

}  // namespace kelvarin
