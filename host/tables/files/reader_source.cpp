#include "host/tables/files/reader_source.h"

#include "host/contract/batch_rows.h"
#include "host/contract/log_details.h"
#include "host/contract/main_ui.h"
#include "host/tables/files/messages.h"

namespace kelvarin {

// Compares its rows among themselves while it is parsed.
class ReaderSource::OrderedUnit final : public BatchUnit {
 public:
  OrderedUnit(std::unique_ptr<TableUnit> unit, const SortOrderChecker& checker)
      : m_unit(std::move(unit)), m_checker(checker) {}

  void parse() override {
    m_unit->parse();
    m_batch = m_unit->batch();
    if (m_batch != nullptr) {
      m_orderBreak = m_checker.breakIn(*m_batch);
    }
  }
  std::size_t byteCount() const override { return m_unit->byteCount(); }
  TableUnit& read() { return *m_unit; }
  const std::optional<OrderBreak>& orderBreak() const { return m_orderBreak; }

 private:
  std::unique_ptr<TableUnit> m_unit;
  const SortOrderChecker& m_checker;
  std::optional<OrderBreak> m_orderBreak;
};

ReaderSource::ReaderSource(XMLNode node, GlobalParameters* parameters)
    : ActionItem(node, parameters) {
  m_inputPinCount = 0;
  m_outputPinCount = 1;
  m_endpoint = static_cast<std::int32_t>(Endpoint::reader);
}

char ReaderSource::init() {
  ActionItem::init();
  m_isReading = false;
  m_failure = {};
  m_isWoken = false;
  m_rowsAccepted = 0;
  return 0;
}

char ReaderSource::close() {
  m_isReading = false;
  if (m_reader) {
    for (const QString& warning : m_reader->warnings()) {
      MainUI::addLog(LogLevel::warning, warning);
    }
    m_reader.reset();
  }
  return 0;
}

float ReaderSource::computeCompletion() const {
  return m_reader ? m_reader->fractionDone() : -1.0f;
}

char ReaderSource::canRunInParallel(QString, bool* reason) {
  if (reason != nullptr) {
    *reason = true;
  }
  return 0;
}

Status<QString> ReaderSource::open() {
  Result<std::unique_ptr<BatchReader>, QString> reader = makeReader();
  if (!reader) {
    return Failure{reader.error()};
  }
  m_reader = std::move(*reader);
  if (m_isCountWanted) {
    m_reader->countOnly();
  }
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
  if (!mustComputeFull()) {
    return m_reader->tryFirstRows();
  }
  if (m_lastRows >= 0 && m_reader->rowCount() > m_lastRows) {
    m_rowsAccepted = m_reader->skipRows(m_reader->rowCount() - m_lastRows);
  }
  return Done{};
}

Result<QVector<SortInfos>, QString> ReaderSource::declaredOrder(const PinOutMetaData&) const {
  return QVector<SortInfos>();
}

Status<QString> ReaderSource::announce(const TableColumns& columns) {
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
  const Result<QVector<SortInfos>, QString> order = declaredOrder(m_columns);
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

bool ReaderSource::openAndAnnounce(ActionItem* action) {
  auto* source = static_cast<ReaderSource*>(action);
  if (const Status<QString> status = source->open(); !status) {
    if (source->isStopped()) {
      return true;
    }
    source->endWithError(status.error(), source->m_reader == nullptr
                                             ? FaultLocation()
                                             : source->m_reader->locationOfFailure());
    source->explainFailureToOpen();
    return true;
  }
  if (!source->mustComputeFull()) {
    return true;
  }
  source->m_isReading = true;
  source->computeRoutine = &ReaderSource::endReading;
  return false;
}

std::unique_ptr<BatchUnit> ReaderSource::readUnit() {
  std::unique_ptr<TableUnit> unit = m_reader->readUnit();
  if (unit == nullptr || !m_isOrderChecked) {
    return unit;
  }
  return std::make_unique<OrderedUnit>(std::move(unit), m_orderChecker);
}

RowBatchPointer ReaderSource::accept(BatchUnit& unit) {
  if (!m_isReading) {
    return nullptr;
  }
  RowBatchPointer batch;
  if (m_isOrderChecked) {
    auto& ordered = static_cast<OrderedUnit&>(unit);
    batch = acceptRead(ordered.read());
    if (const std::optional<OrderBreak> found = firstBreak(ordered)) {
      m_failure = outOfOrder(*found);
      m_isReading = false;
      batch = found->row == 0 ? nullptr : batch->slice(0, found->row);
    }
  } else {
    batch = acceptRead(static_cast<TableUnit&>(unit));
  }
  m_rowsAccepted += batch != nullptr ? static_cast<long long>(batch->rowCount()) : 0;
  return batch;
}

RowBatchPointer ReaderSource::acceptRead(TableUnit& unit) {
  m_reader->accept(unit);
  m_failure = {unit.failure(), unit.failureLocation()};
  m_isReading = m_failure.text.isEmpty();
  return unit.batch();
}

// In the rows of the unit, of which the first follows those that were accepted before.
std::optional<OrderBreak> ReaderSource::firstBreak(const OrderedUnit& unit) {
  if (unit.batch() == nullptr) {
    return std::nullopt;
  }
  BatchRows rows;
  rows.start(unit.batch());
  unsigned char** values = m_checkedRow.getAllColForWrite();
  rows.take(values);
  if (!m_orderChecker.accepts(m_checkedRow)) {
    return OrderBreak{0, m_orderChecker.refusedColumn()};
  }
  if (!unit.orderBreak() && rows.rowsLeft() > 0) {
    rows.skip(rows.rowsLeft() - 1);
    rows.take(values);
    (void)m_orderChecker.accepts(m_checkedRow);
  }
  return unit.orderBreak();
}

bool ReaderSource::readOn() {
  m_isReading = false;
  return false;
}

bool ReaderSource::endReading(ActionItem* action) {
  auto* source = static_cast<ReaderSource*>(action);
  if (source->m_failure.text.isEmpty() || source->isStopped()) {
    return true;
  }
  return source->endWithError(source->m_failure.text, source->m_failure.location);
}

bool ReaderSource::endWithError(const QString& text, const FaultLocation& location) {
  LogDetails details;
  details.column = location.column;
  details.row = location.row;
  logWithDetails(LogLevel::error, text, details);
  failRun();
  return true;
}

ReadFault ReaderSource::outOfOrder(const OrderBreak& found) const {
  const long long row = m_rowsAccepted + static_cast<long long>(found.row);
  for (const SortInfos& entry : m_columns.sortOrder()) {
    if (entry.column() == found.column) {
      const QString& column = m_columns.names()[found.column];
      return {table_messages::atLocation(m_reader->locationOfRow(row),
                                         sortOrderBrokenText(column, entry.type())),
              {column, row}};
    }
  }
  return {};
}

}  // namespace kelvarin
