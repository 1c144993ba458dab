#include "host/tables/csv/read_csv.h"

#include <QDir>

#include "host/tables/csv/messages.h"

namespace kelvarin {

namespace {

constexpr char16_t kSortedOn[] = u"sortedOn";

std::vector<AttributeDescription> describedAttributes() {
  std::vector<AttributeDescription> attributes = CsvReadSettings::describedAttributes();
  attributes.insert(attributes.begin(), TableSource::describedFile());
  attributes.push_back(
      {QString::fromUtf16(kSortedOn), AttributeKind::text,
       QStringLiteral("the sort order that the file has, such as 'id 0, name A'; verified"),
       QStringLiteral("")});
  const std::vector<AttributeDescription> ofColumns = ColumnSettings::describedAttributes();
  attributes.insert(attributes.end(), ofColumns.begin(), ofColumns.end());
  return attributes;
}

}  // namespace

const ActionDescription& ReadCsv::catalogue() {
  static const ActionDescription entry{
      .typeName = "ReadCSV",
      .toolTip = "Read a CSV file",
      .tags = {"Common"},
      .keywords = {"csv", "tsv", "text", "file", "import", "input", "load", "read", "in"},
      .fileTypes = {"csv", "tsv", "txt"},
      .attributes = describedAttributes(),
      .children = {ColumnSettings::describedElement()}};
  return entry;
}

ReadCsv::ReadCsv(XMLNode node, GlobalParameters* parameters)
    : Described(node, parameters), m_settings(node, parameters), m_columns(node, parameters) {
  QString sortedOn;
  readAttribute(node, kSortedOn, sortedOn, parameters);
  setSortedOn(sortedOn);
}

std::vector<ElementFault> ReadCsv::settingFaults() const {
  const TextExpansion expanded = [this](const QString& text) { return expandString(text); };
  std::vector<ElementFault> faults = m_columns.faults(node(), expanded);
  if (const auto settings = m_settings.settings(expanded); !settings) {
    faults.insert(faults.begin(), {LogLevel::error, node(), settings.error()});
  }
  return faults;
}

void ReadCsv::saveXML(std::wostringstream& out, QString name) {
  saveHead(out, name);
  m_settings.save(out);
  if (!sortedOn().isEmpty()) {
    writeAttribute(out, kSortedOn, sortedOn());
  }
  m_columns.saveAttributes(out);
  m_columns.saveChildrenAndEnd(out, typeName());
}

Result<std::unique_ptr<BatchReader>, QString> ReadCsv::makeReaderOf(const QString& path) const {
  const TextExpansion expanded = [this](const QString& text) { return expandString(text); };
  const Result<CsvFileSettings, QString> settings = m_settings.settings(expanded);
  if (!settings) {
    return Failure{settings.error()};
  }
  Result<ColumnRules, QString> rules = m_columns.rules(expanded);
  if (!rules) {
    return Failure{rules.error()};
  }
  const QStringList paths = filesOfPattern(path);
  if (paths.isEmpty() && isFilePattern(path) && !QFileInfo::exists(path)) {
    return Failure{table_messages::noFileMatches(path)};
  }
  if (paths.isEmpty()) {
    auto reader = std::make_unique<CsvBatchReader>(path, *settings, std::move(*rules));
    reader->setFileName(nameInColumn(path));
    return std::unique_ptr<BatchReader>(std::move(reader));
  }
  std::vector<CsvFilesReader::File> files;
  for (const QString& file : paths) {
    files.push_back({file, nameInColumn(file)});
  }
  return std::unique_ptr<BatchReader>(
      std::make_unique<CsvFilesReader>(std::move(files), *settings, std::move(*rules)));
}

QList<UsedFile> ReadCsv::usedFiles() const {
  const QStringList paths = filesOfPattern(expandedFile());
  if (paths.isEmpty()) {
    return TableSource::usedFiles();
  }
  QList<UsedFile> files;
  for (const QString& path : paths) {
    files += {.path = path, .use = FileUse::reads, .companions = {}};
  }
  return files;
}

// From the graph's folder on where the setting is, so that a table is the same wherever its graph
// is moved.
QString ReadCsv::nameInColumn(const QString& path) const {
  const bool isWhole = QDir::isAbsolutePath(expandString(file())) || path == QLatin1String("-");
  return isWhole ? path : QDir(expandFile(QStringLiteral("."))).relativeFilePath(path);
}

}  // namespace kelvarin
