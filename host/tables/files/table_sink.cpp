#include "host/tables/files/table_sink.h"

#include "host/contract/attribute_table.h"
#include "host/contract/main_ui.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

using RunningState = GlobalParameters::RunningState;

namespace {

constexpr char16_t kFile[] = u"file";

}  // namespace

AttributeDescription TableSink::describedFile() {
  return {QString::fromUtf16(kFile), AttributeKind::text,
          QStringLiteral("the file; - is standard output"), QStringLiteral("")};
}

TableSink::TableSink(XMLNode node, GlobalParameters* parameters) : ActionItem(node, parameters) {
  readAttribute(node, kFile, m_file, parameters);
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

QString TableSink::expandedFile() const {
  const QString name = expandString(m_file);
  return name == QLatin1String("-") ? name : expandOutputFile(m_file, QString());
}

char TableSink::init() {
  ActionItem::init();
  if (!mustComputeFull()) {
    return 0;
  }
  if (m_file.isEmpty()) {
    endWithError(table_messages::noFileGiven(QLatin1String(typeName())));
    return 1;
  }
  const QString file = expandedFile();
  Status<QString> status = checkSettings();
  if (status) {
    status = claimFile();
  }
  if (status) {
    status = m_output.open(file);
  }
  for (const QString& warning : status ? warningsAboutFiles() : QStringList()) {
    MainUI::addLog(LogLevel::warning, warning);
  }
  if (!status && (run() == nullptr || run()->isRunning())) {
    endWithError(status.error());
  }
  return status ? 0 : 1;
}

QList<UsedFile> TableSink::usedFiles() const {
  if (m_file.isEmpty()) {
    return {};
  }
  return {{.path = expandedFile(), .use = FileUse::writes, .companions = {}}};
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
  if (m_file.isEmpty()) {
    endWithError(table_messages::noFileGiven(QLatin1String(typeName())));
    return;
  }
  if (const Status<QString> status = checkSettings(); !status) {
    endWithError(status.error());
    return;
  }
  const QString file = expandedFile();
  const QString reason = isStandardOutput(file) ? QString() : whyNotWritable(file);
  if (!reason.isEmpty()) {
    endWithError(reason);
  }
}

Status<QString> TableSink::claimFile() {
  m_names.giveBack();
  for (const UsedFile& file : usedFiles()) {
    if (const auto hindrance = m_names.claim(*this, file)) {
      return Failure{*hindrance};
    }
  }
  return Done{};
}

char TableSink::close() {
  char result = 0;
  if (m_output.isComplete() && !hasFailed() && hasRunEndedNormally()) {
    if (const Status<QString> status = m_output.publish(); !status) {
      endWithError(status.error());
      result = 1;
    }
  }
  if (const Status<QString> status = m_queue.drop(); !status) {
    endWithError(status.error());
  }
  m_output.discard();
  m_names.giveBack();
  m_encoder.reset();
  release();
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
  const OneRow& columns = announced != nullptr ? *announced : emptyRow;
  sink->m_queue.start(sink->run() == nullptr ? nullptr : sink->run()->tasks, sink);
  if (const Status<QString> status = sink->begin(columns); !status) {
    return sink->endWithError(status.error());
  }
  sink->m_encoder = sink->makeEncoder();
  sink->computeRoutine = &TableSink::takeBatch;
  return sink->take(std::move(taken));
}

bool TableSink::takeBatch(ActionItem* action) {
  auto* sink = static_cast<TableSink*>(action);
  return sink->take(sink->getNextBatchFromInPin(0));
}

bool TableSink::take(TakenBatch taken) {
  if (taken.batch == nullptr) {
    return endOfInput();
  }
  if (m_encoder != nullptr && taken.encoded == nullptr) {
    taken.encoded = m_encoder->encode(*taken.batch);
  }
  const Status<QString> status =
      m_encoder != nullptr ? writeEncoded(std::move(taken.encoded)) : write(*taken.batch);
  return status ? false : endWithError(status.error());
}

bool TableSink::endOfInput() {
  if (run() != nullptr && !run()->isRunning()) {
    return true;
  }
  Status<QString> status = finish();
  if (status) {
    status = m_queue.finish();
  }
  if (status) {
    status = m_output.complete();
  }
  return status ? true : endWithError(status.error());
}

bool TableSink::endWithError(const QString& text) {
  if (m_output.hasReaderLeft()) {
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
