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

// Compares its rows among themselves while it is parsed.
class TableSource::OrderedUnit final : public BatchUnit {
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

std::unique_ptr<BatchUnit> TableSource::readUnit() {
  std::unique_ptr<TableUnit> unit = m_reader->readUnit();
  if (unit == nullptr || !m_isOrderChecked) {
    return unit;
  }
  return std::make_unique<OrderedUnit>(std::move(unit), m_orderChecker);
}

RowBatchPointer TableSource::accept(BatchUnit& unit) {
  if (!m_isReading) {
    return nullptr;
  }
  RowBatchPointer batch;
  if (m_isOrderChecked) {
    auto& ordered = static_cast<OrderedUnit&>(unit);
    batch = acceptRead(ordered.read());
    if (const std::optional<OrderBreak> found = firstBreak(ordered)) {
      m_failure = outOfOrderText(*found);
      m_isReading = false;
      batch = found->row == 0 ? nullptr : batch->slice(0, found->row);
    }
  } else {
    batch = acceptRead(static_cast<TableUnit&>(unit));
  }
  m_rowsAccepted += batch != nullptr ? static_cast<long long>(batch->rowCount()) : 0;
  return batch;
}

RowBatchPointer TableSource::acceptRead(TableUnit& unit) {
  m_reader->accept(unit);
  m_failure = unit.failure();
  m_isReading = m_failure.isEmpty();
  return unit.batch();
}

// In the rows of the unit, of which the first follows those that were accepted before.
std::optional<OrderBreak> TableSource::firstBreak(const OrderedUnit& unit) {
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

QString TableSource::outOfOrderText(const OrderBreak& found) const {
  const long long row = m_rowsAccepted + static_cast<long long>(found.row);
  for (const SortInfos& entry : m_columns.sortOrder()) {
    if (entry.column() == found.column) {
      return table_messages::atLocation(
          m_reader->locationOfRow(row),
          sortOrderBrokenText(m_columns.names()[found.column], entry.type()));
    }
  }
  return {};
}

}  // namespace kelvarin
