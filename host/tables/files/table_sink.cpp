#include "host/tables/files/table_sink.h"

#include <algorithm>

#include <QDir>
#include <QFileInfo>

#include "host/contract/attribute_table.h"
#include "host/contract/main_ui.h"
#include "host/contract/missing_column.h"
#include "host/contract/row_columns.h"
#include "host/files/messages.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

using RunningState = GlobalParameters::RunningState;

namespace {

constexpr char16_t kFile[] = u"file";

}  // namespace

std::vector<AttributeDescription> TableSink::describedAttributes(
    std::vector<AttributeDescription> attributes) {
  attributes.insert(attributes.begin(),
                    {QString::fromUtf16(kFile), AttributeKind::text,
                     QStringLiteral("the file; - is standard output"), QStringLiteral("")});
  describe<OutputSettings>(attributes, kOutputAttributes);
  return attributes;
}

TableSink::TableSink(XMLNode node, GlobalParameters* parameters)
    : WithDescription(node, parameters) {
  readAttribute(node, kFile, m_file, parameters);
  readAttributes<OutputSettings>(node, kOutputAttributes, m_settings, parameters);
  m_inputPinCount = 1;
  m_outputPinCount = 0;
  m_endpoint = static_cast<std::int32_t>(Endpoint::writer);
  m_fileAccess = kWritesFiles;
}

void TableSink::saveHead(std::wostringstream& out, const QString& name) const {
  saveAI(out, name, 1.0);
  if (!m_file.isEmpty()) {
    writeAttribute(out, kFile, m_file);
  }
}

void TableSink::saveOutput(std::wostringstream& out) const {
  writeAttributes<OutputSettings>(out, kOutputAttributes, m_settings);
}

QString TableSink::expandedFile() const {
  const QString name = expandString(m_file);
  return name == QLatin1String("-") ? name : expandOutputFile(m_file, QString());
}

ColumnFate TableSink::followColumn(const QString& oldName, const QString& newName) {
  if (m_settings.splitColumn == oldName) {
    m_settings.splitColumn = newName;
  }
  return ColumnFate::ends;
}

QString TableSink::faultOfSplit() const {
  if (!m_settings.isSplitKnown()) {
    return table_messages::badSplit(m_settings.split);
  }
  return m_settings.isSplit() && isStandardOutput(expandedFile())
             ? table_messages::standardOutputNotSplit()
             : QString();
}

std::vector<ElementFault> TableSink::settingFaults() const {
  const QString fault = faultOfSplit();
  return fault.isEmpty() ? std::vector<ElementFault>()
                         : std::vector<ElementFault>{{LogLevel::error, node(), fault}};
}

Status<QString> TableSink::checkAllSettings() {
  if (m_file.isEmpty()) {
    return Failure{table_messages::noFileGiven(QLatin1String(typeName()))};
  }
  const QString fault = faultOfSplit();
  return fault.isEmpty() ? checkSettings() : Failure{fault};
}

Status<QString> TableSink::checkAllColumns(const OneRow& columns) {
  if (m_settings.isSplit()) {
    const QString name = expandString(m_settings.splitColumn);
    if (columns.getIndexOfColumn(name) < 0) {
      return Failure{table_messages::splitColumnMissing(
          QLatin1String(typeName()), missingColumnHint(name, columns.getColNamesDeep()))};
    }
  }
  return checkColumns(columns);
}

char TableSink::init() {
  ActionItem::init();
  m_files.clear();
  if (!mustComputeFull()) {
    return 0;
  }
  Status<QString> status = checkAllSettings();
  m_names.giveBack();
  for (const UsedFile& file : usedFiles()) {
    if (status) {
      status = claim(file);
    }
  }
  if (status && !m_settings.isSplit()) {
    const auto added = addFile(expandedFile());
    status = added ? Status<QString>(Done{}) : Failure{added.error()};
  }
  for (const QString& warning : status ? warningsAboutFiles() : QStringList()) {
    MainUI::addLog(LogLevel::warning, warning);
  }
  if (!status && (run() == nullptr || run()->isRunning())) {
    endWithError(status.error());
  }
  return status ? 0 : 1;
}

// Splits stand for all their files: two of one name would meet in the names they make of it.
QList<UsedFile> TableSink::usedFiles() const {
  if (m_file.isEmpty()) {
    return {};
  }
  const QString file = expandedFile();
  return {{.path = m_settings.isSplit() ? insertedBeforeExtension(file, QStringLiteral("*")) : file,
           .use = FileUse::writes,
           .companions = {}}};
}

QStringList TableSink::warningsAboutFiles() const {
  const QString file = expandedFile();
  const QString warning = isStandardOutput(file) ? QString() : foreignExtensionHint(file, format());
  return warning.isEmpty() ? QStringList() : QStringList{warning};
}

void TableSink::checkOutput() {
  if (!isInputPinLinked(0)) {
    endWithError(table_messages::inputNotLinked(QLatin1String(typeName())));
    return;
  }
  if (const Status<QString> status = checkAllSettings(); !status) {
    endWithError(status.error());
    return;
  }
  warnOfIdleSplit();
  const QString file = expandedFile();
  const QString reason = isStandardOutput(file)       ? QString()
                         : m_settings.createDirectory ? whyNotCreatable(file)
                                                      : whyNotWritable(file);
  if (!reason.isEmpty()) {
    endWithError(reason);
    return;
  }
  if (const OneRow* columns = announcedColumnsOfInPin(0)) {
    if (const Status<QString> status = checkAllColumns(*columns); !status) {
      endWithError(status.error());
    }
  }
}

void TableSink::warnOfIdleSplit() const {
  if (!m_settings.isSplit() && !m_settings.splitColumn.isEmpty()) {
    MainUI::addLog(LogLevel::warning, messages::splitOff());
  }
}

Status<QString> TableSink::claim(const UsedFile& file) {
  const auto hindrance = m_names.claim(*this, file);
  return hindrance ? Failure{*hindrance} : Status<QString>(Done{});
}

Result<SinkFile*, QString> TableSink::addFile(const QString& path) {
  const QString folder = QFileInfo(path).path();
  if (m_settings.createDirectory && !isStandardOutput(path) && !QDir().mkpath(folder)) {
    if (const QString reason = whyNotCreatable(path); !reason.isEmpty()) {
      return Failure{reason};
    }
  }
  auto file = std::make_unique<SinkFile>(path);
  if (const Status<QString> status = file->output.open(path); !status) {
    return Failure{status.error()};
  }
  file->queue.start(run() == nullptr ? nullptr : run()->tasks, this);
  m_files.push_back(std::move(file));
  return m_files.back().get();
}

char TableSink::close() {
  Status<QString> status = Done{};
  const bool areAllComplete =
      std::ranges::all_of(m_files, [](const auto& file) { return file->output.isComplete(); });
  if (areAllComplete && !hasFailed() && hasRunEndedNormally()) {
    for (const auto& file : m_files) {
      status = status ? file->output.publish() : status;
    }
  }
  const char result = status ? 0 : 1;
  for (const auto& file : m_files) {
    const Status<QString> dropped = file->drop();
    status = status ? dropped : status;
  }
  if (!status) {
    endWithError(status.error());
  }
  m_files.clear();
  m_current = nullptr;
  m_openSplits.clear();
  m_splitFiles.clear();
  m_splitMark.reset();
  m_names.giveBack();
  m_encoder.reset();
  return result;
}

char TableSink::canRunInParallel(QString, bool* reason) {
  if (reason != nullptr) {
    *reason = true;
  }
  return 0;
}

bool TableSink::takeFirstBatch(ActionItem* action) {
  auto* sink = static_cast<TableSink*>(action);
  if (!sink->isInputPinLinked(0)) {
    return sink->endWithError(table_messages::inputNotLinked(QLatin1String(sink->typeName())));
  }
  TakenBatch taken = sink->getNextBatchFromInPin(0);
  if (taken.batch == nullptr && sink->run() != nullptr && !sink->run()->isRunning()) {
    return true;
  }
  PinOutMetaData noColumns;
  const OneRow emptyRow(&noColumns);
  const OneRow* announced = sink->announcedColumnsOfInPin(0);
  if (const auto status = sink->plan(announced != nullptr ? *announced : emptyRow); !status) {
    return sink->endWithError(status.error());
  }
  sink->computeRoutine = &TableSink::takeBatch;
  return sink->take(std::move(taken));
}

Status<QString> TableSink::plan(const OneRow& columns) {
  if (Status<QString> status = checkAllColumns(columns); !status) {
    return status;
  }
  copyColumns(columns, m_columns);
  m_encoder = makeEncoder(m_columns);
  if (!m_settings.isSplit()) {
    m_current = m_files.front().get();
    return begin(*m_current);
  }
  const QString name = expandString(m_settings.splitColumn);
  m_splitColumn = m_columns.getIndexOfColumn(name);
  m_isSortedOnSplit = isSortedOn(m_columns, m_splitColumn);
  m_encoder = std::make_unique<SplitEncoder>(
      std::move(m_encoder), static_cast<std::size_t>(m_splitColumn), m_isSortedOnSplit);
  if (!m_isSortedOnSplit) {
    MainUI::addLog(LogLevel::information,
                   table_messages::splitNotSorted(QLatin1String(typeName()), name));
  }
  return Done{};
}

Status<QString> TableSink::begin(SinkFile& file) {
  file.writer = makeWriter(file);
  return file.writer->begin(m_columns);
}

bool TableSink::takeBatch(ActionItem* action) {
  auto* sink = static_cast<TableSink*>(action);
  return sink->take(sink->getNextBatchFromInPin(0));
}

bool TableSink::take(TakenBatch taken) {
  if (taken.batch == nullptr) {
    return endOfInput();
  }
  if (taken.encoded == nullptr) {
    taken.encoded = m_encoder->encode(*taken.batch);
  }
  const Status<QString> status = m_settings.isSplit()
                                     ? writeSplit(static_cast<SplitBatch&>(*taken.encoded))
                                     : m_current->writer->write(std::move(taken.encoded));
  return status ? false : endWithError(status.error());
}

Status<QString> TableSink::writeSplit(SplitBatch& batch) {
  for (SplitBatch::Part& part : batch.parts) {
    Status<QString> status = changeSplit(part.mark);
    if (status) {
      status = m_current->writer->write(std::move(part.rows));
    }
    if (!status) {
      return status;
    }
  }
  return Done{};
}

// Opens or continues the file of the value. A sorted table needs one file at a time.
Status<QString> TableSink::changeSplit(const std::string& mark) {
  if (m_splitMark == mark) {
    return Done{};
  }
  if (m_isSortedOnSplit && m_current != nullptr) {
    Status<QString> status = complete(*m_current);
    if (status) {
      status = m_current->output.closeUntilPublished();
    }
    if (!status) {
      return status;
    }
  }
  m_splitMark = mark;
  if (const auto open = m_openSplits.find(mark); open != m_openSplits.end()) {
    m_current = open->second;
    return Done{};
  }
  const Result<QString, QString> path = fileOfSplit(mark);
  if (!path) {
    return Failure{path.error()};
  }
  const Result<SinkFile*, QString> added = addFile(*path);
  if (!added) {
    return Failure{added.error()};
  }
  m_current = *added;
  if (!m_isSortedOnSplit) {
    m_openSplits[mark] = m_current;
  }
  return begin(*m_current);
}

Result<QString, QString> TableSink::fileOfSplit(const std::string& mark) {
  m_columns.getAllColForWrite()[m_splitColumn] =
      mark.empty() ? nullptr : reinterpret_cast<unsigned char*>(const_cast<char*>(mark.data()));
  const QString text = splitNameText(m_columns, m_splitColumn);
  const QString shown = shownSplitValue(m_columns, m_splitColumn);
  m_columns.getAllColForWrite()[m_splitColumn] = nullptr;
  const QString path = insertedBeforeExtension(expandedFile(), text);
  const QString key = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
  if (const SplitFiles::Entry* known = m_splitFiles.enter(key, {mark, shown, path})) {
    return Failure{known->mark == mark ? table_messages::splitValueReturns(path, shown)
                                       : table_messages::splitNamesMeet(path, known->shown, shown)};
  }
  const Status<QString> status = claim({.path = path, .use = FileUse::writes, .companions = {}});
  return status ? Result<QString, QString>(path) : Failure{status.error()};
}

Status<QString> TableSink::complete(SinkFile& file) {
  const Status<QString> status = file.complete();
  for (const QString& warning : status ? file.writer->warnings() : QStringList()) {
    MainUI::addLog(LogLevel::warning, warning);
  }
  if (status) {
    file.writer.reset();
  }
  return status;
}

bool TableSink::endOfInput() {
  if (run() != nullptr && !run()->isRunning()) {
    return true;
  }
  for (const auto& file : m_files) {
    if (file->output.isComplete()) {
      continue;
    }
    if (const Status<QString> status = complete(*file); !status) {
      return endWithError(status.error());
    }
  }
  return true;
}

bool TableSink::endWithError(const QString& text) {
  if (!m_files.empty() && m_files.front()->output.hasReaderLeft()) {
    return true;
  }
  MainUI::addLog(LogLevel::error, text);
  failRun();
  auto normalEnd = RunningState::endedNormally;
  if (run() != nullptr) {
    run()->status.compare_exchange_strong(normalEnd, RunningState::failed);
  }
  return true;
}

bool TableSink::hasRunEndedNormally() const {
  return run() == nullptr || run()->status.load() == RunningState::endedNormally;
}

}  // namespace kelvarin
