#include "cli/reports/rejected_rows_source.h"

#include "host/contract/main_ui.h"

namespace kelvarin {

class RejectedRowsSource::Unit final : public BatchUnit {
 public:
  explicit Unit(RowBatchPointer batch) { m_batch = std::move(batch); }

  void parse() override {}
  std::size_t byteCount() const override { return m_batch->byteCount(); }
};

RejectedRowsSource::RejectedRowsSource(XMLNode node, GlobalParameters* parameters,
                                       RejectedRows& rows)
    : ActionItem(node, parameters), m_rows(rows) {
  m_inputPinCount = 0;
  m_outputPinCount = 1;
  m_endpoint = static_cast<std::int32_t>(Endpoint::reader);
}

ActionItem* RejectedRowsSource::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new RejectedRowsSource(node, parameters, m_rows);
}

bool RejectedRowsSource::announce(ActionItem* action) {
  auto& self = static_cast<RejectedRowsSource&>(*action);
  QVector<QString> names;
  QVector<MetaInfo> metas;
  for (const PinColumns::Column& column : RejectedRows::columns().columns) {
    names += column.name;
    metas += MetaInfo(column.meta, 0);
  }
  OneRow* row = self.getOutputRowForOutputPin(0);
  row->setNumberOfColumns(static_cast<int>(names.size()));
  row->setColName(names);
  row->setMetaData(metas);
  self.announceColumnsOfOutputPin(0);
  self.m_isReading = self.mustComputeFull();
  self.computeRoutine = &RejectedRowsSource::end;
  return !self.m_isReading;
}

std::unique_ptr<BatchUnit> RejectedRowsSource::readUnit() {
  RowBatchPointer batch = m_rows.next();
  return batch == nullptr ? nullptr : std::make_unique<Unit>(std::move(batch));
}

bool RejectedRowsSource::readOn() {
  m_isReading = false;
  if (!m_rows.failure().isEmpty()) {
    MainUI::addLog(LogLevel::error, m_rows.failure());
    failRun();
  }
  return false;
}

}  // namespace kelvarin
