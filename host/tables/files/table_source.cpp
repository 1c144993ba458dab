#include "host/tables/files/table_source.h"

#include "host/contract/attribute_table.h"
#include "host/contract/batch_rows.h"
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
  m_isReading = false;
  m_failure.clear();
  m_isWoken = false;
  m_rowsAccepted = 0;
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
  m_isReading = false;
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
  const Result<TableColumns, QString> columns = m_reader->open([this] { return isStopped(); });
  for (const QString& note : m_reader->notes()) {
    MainUI::addLog(LogLevel::information, note);
  }
  if (!columns) {
    return Failure{columns.error()};
  }
  if (const Status<QString> status = announce(*columns); !status) {
    return status;
  }
  return mustComputeFull() ? Done{} : m_reader->tryFirstRows();
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

  m_checkedRow.setNumberOfColumns(static_cast<int>(metas.size()));
  m_columns.setNames(columns.names);
  m_columns.setMetas(metas);
  const Result<QVector<SortInfos>, QString> order = parseSortOrder(m_sortedOn, m_columns);
  if (!order) {
    return Failure{order.error()};
  }
  row->setSortInfos(*order);
  m_columns.setSortOrder(*order);
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
  source->m_isReading = true;
  source->computeRoutine = &TableSource::endReading;
  return false;
}

RowBatchPointer TableSource::accept(BatchUnit& unit) {
  if (!m_isReading) {
    return nullptr;
  }
  auto& read = static_cast<TableUnit&>(unit);
  m_reader->accept(read);
  m_failure = read.failure();
  m_isReading = m_failure.isEmpty();
  RowBatchPointer batch = read.batch();
  if (batch != nullptr && m_isOrderChecked) {
    batch = rowsInOrder(batch);
  }
  m_rowsAccepted += batch != nullptr ? static_cast<long long>(batch->rowCount()) : 0;
  return batch;
}

// The rows before the first one that is out of order, which ends the reading.
RowBatchPointer TableSource::rowsInOrder(const RowBatchPointer& batch) {
  BatchRows rows;
  rows.start(batch);
  while (rows.rowsLeft() > 0) {
    rows.take(m_checkedRow.getAllColForWrite());
    if (!m_orderChecker.accepts(m_checkedRow)) [[unlikely]] {
      const std::size_t rowsBefore = rows.rowsTaken() - 1;
      m_failure = outOfOrderText(m_rowsAccepted + static_cast<long long>(rowsBefore));
      m_isReading = false;
      return rowsBefore == 0 ? nullptr : batch->slice(0, rowsBefore);
    }
  }
  return batch;
}

bool TableSource::readOn() {
  m_isReading = false;
  return false;
}

bool TableSource::endReading(ActionItem* action) {
  auto* source = static_cast<TableSource*>(action);
  if (source->m_failure.isEmpty() || source->isStopped()) {
    return true;
  }
  return source->endWithError(source->m_failure);
}

bool TableSource::endWithError(const QString& text) {
  MainUI::addLog(LogLevel::error, text);
  failRun();
  return true;
}

QString TableSource::outOfOrderText(long long row) const {
  const int column = m_orderChecker.refusedColumn();
  for (const SortInfos& entry : m_columns.sortOrder()) {
    if (entry.column() == column) {
      return table_messages::atLocation(
          m_reader->locationOfRow(row),
          sortOrderBrokenText(m_columns.names()[column], entry.type()));
    }
  }
  return {};
}

}  // namespace kelvarin
