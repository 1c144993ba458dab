#include "host/tables/files/table_source.h"

#include "host/contract/attribute_table.h"
#include "host/contract/log_details.h"
#include "host/contract/main_ui.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

namespace {

constexpr char16_t kFile[] = u"file";

}  // namespace

AttributeDescription TableSource::describedFile() {
  return {QString::fromUtf16(kFile), AttributeKind::text,
          QStringLiteral("the file; relative names start at the graph's folder"),
          QStringLiteral("")};
}

TableSource::TableSource(XMLNode node, GlobalParameters* parameters)
    : ActionItem(node, parameters) {
  readAttribute(node, kFile, m_file, parameters);
  m_inputPinCount = 0;
  m_outputPinCount = 1;
  m_endpoint = static_cast<std::int32_t>(Endpoint::reader);
}

void TableSource::saveHead(std::wostringstream& out, const QString& name) const {
  saveAI(out, name, 1.0);
  if (!m_file.isEmpty()) {
    writeAttribute(out, kFile, m_file);
  }
}

char TableSource::init() {
  ActionItem::init();
  m_rowsPublished = 0;
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
  return {{.path = expandFile(m_file), .use = FileUse::reads, .companions = {}}};
}

char TableSource::close() {
  m_names.giveBack();
  m_batch = nullptr;
  if (m_readAhead) {
    m_readAhead->stop();
    m_readAhead.reset();
  }
  if (m_reader) {
    for (const QString& warning : m_reader->warnings()) {
      MainUI::addLog(LogLevel::warning, warning);
    }
    m_reader.reset();
  }
  return 0;
}

float TableSource::computeCompletion() const {
  return m_reader ? m_reader->fractionDone() : -1.0f;
}

char TableSource::canRunInParallel(QString, bool* reason) {
  if (reason != nullptr) {
    *reason = true;
  }
  return 0;
}

Status<QString> TableSource::open() {
  Result<std::unique_ptr<BatchReader>, QString> reader = makeReader(expandFile(m_file));
  if (!reader) {
    return Failure{reader.error()};
  }
  m_reader = std::move(*reader);
  m_readAhead = std::make_unique<ReadAhead>(*m_reader, this);
  const Result<TableColumns, QString> columns = m_readAhead->open([this] { return !isStopped(); });
  for (const QString& note : m_reader->notes()) {
    MainUI::addLog(LogLevel::information, note);
  }
  if (!columns) {
    return Failure{columns.error()};
  }
  if (const Status<QString> status = announce(*columns); !status) {
    return status;
  }
  if (!mustComputeFull()) {
    return m_reader->tryFirstRows();
  }
  m_readAhead->start(columns->types);
  return Done{};
}

void TableSource::explainFailureToOpen() const {
  const QString path = expandFile(m_file);
  QString hint = missingFileHint(path);
  if (hint.isEmpty() && format() != FileFormat::csv) {  // its reader's errors name other formats
    hint = foreignFormatHint(path, format());
  }
  if (!hint.isEmpty()) {
    logExplanation(hint);
  }
}

Status<QString> TableSource::announce(const TableColumns& columns) {
  QVector<MetaInfo> metas;
  for (const MetaTypeColumn type : columns.types) {
    metas.append(MetaInfo(type, 0));
  }
  OneRow* row = getOutputRowForOutputPin(0);
  row->setNumberOfColumns(static_cast<int>(metas.size()));
  row->setColName(columns.names);
  row->setMetaData(metas);

  PinOutMetaData described;
  described.setColumnCount(static_cast<int>(metas.size()));
  described.setNames(columns.names);
  described.setMetas(metas);
  const Result<QVector<SortInfos>, QString> order = parseSortOrder(m_sortedOn, described);
  if (!order) {
    return Failure{order.error()};
  }
  row->setSortInfos(*order);
  m_orderChecker = SortOrderChecker(*order);
  m_isOrderChecked = !order->isEmpty();
  announceColumnsOfOutputPin(0);
  return Done{};
}

bool TableSource::openAndAnnounce(ActionItem* action) {
  auto* source = static_cast<TableSource*>(action);
  if (const Status<QString> status = source->open(); !status) {
    if (source->isStopped()) {
      return true;
    }
    source->endWithError(status.error());
    source->explainFailureToOpen();
    return true;
  }
  if (!source->mustComputeFull()) {
    return true;
  }
  source->computeRoutine = &TableSource::publishRow;
  return !source->takeNextBatch();
}

bool TableSource::publishRow(ActionItem* action) {
  auto* source = static_cast<TableSource*>(action);
  OneRow* row = source->getOutputRowForOutputPin(0);
  while (!source->m_batch->takeRow(row->getAllColForWrite())) [[unlikely]] {
    if (!source->takeNextBatch()) {
      return true;
    }
  }
  if (source->m_isOrderChecked && !source->m_orderChecker.accepts(*row)) [[unlikely]] {
    return source->endWithError(source->outOfOrderText());
  }
  ++source->m_rowsPublished;
  source->setRowReadyForOutput(0);
  return false;
}

bool TableSource::takeNextBatch() {
  m_batch = m_readAhead->next([this] { return !isStopped(); });
  if (m_batch == nullptr && !m_readAhead->failure().isEmpty()) {
    endWithError(m_readAhead->failure());
  }
  if (m_batch == nullptr) {
    return false;
  }
  offerRowsOnOutputPin(0, *m_batch, m_batch->rowsLeft(),
                       m_isOrderChecked ? nullptr : &TableSource::skipRows);
  return true;
}

// Of rows whose order nobody has asked to check.
void TableSource::skipRows(ActionItem* action, std::size_t count) {
  auto* source = static_cast<TableSource*>(action);
  source->m_batch->skip(count);
  source->m_rowsPublished += static_cast<long long>(count);
}

bool TableSource::endWithError(const QString& text) {
  MainUI::addLog(LogLevel::error, text);
  failRun();
  return true;
}

QString TableSource::outOfOrderText() {
  m_readAhead->stop();
  const int column = m_orderChecker.refusedColumn();
  const OneRow* row = getOutputRowForOutputPin(0);
  for (const SortInfos& entry : row->sortInfos()) {
    if (entry.column() == column) {
      return table_messages::atLocation(m_reader->locationOfRow(m_rowsPublished),
                                        sortOrderBrokenText(row->colName(column), entry.type()));
    }
  }
  return {};
}

}  // namespace kelvarin
