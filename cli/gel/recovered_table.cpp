#include "cli/gel/recovered_table.h"

#include "cli/gel/messages.h"
#include "columnar/reader/stored_order.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

// Rows that the recovery has found, or its last event. Finding them is what takes time, and that
// goes block after block.
class RecoveredTable::Unit final : public BatchUnit {
 public:
  explicit Unit(const ReadEvent& event) : m_kind(event.kind) { m_batch = event.batch; }

  void parse() override {}
  std::size_t byteCount() const override { return m_batch ? m_batch->byteCount() : 0; }
  ReadEvent::Kind kind() const { return m_kind; }

 private:
  const ReadEvent::Kind m_kind;
};

RecoveredTable::RecoveredTable(XMLNode node, GlobalParameters* parameters, const GelFile& file,
                               TableRecovery& recovery)
    : ActionItem(node, parameters), m_file(file), m_recovery(recovery) {
  m_inputPinCount = 0;
  m_outputPinCount = 1;
  m_endpoint = static_cast<std::int32_t>(Endpoint::reader);
}

ActionItem* RecoveredTable::createFromXML(XMLNode node, GlobalParameters* parameters) {
  return new RecoveredTable(node, parameters, m_file, m_recovery);
}

bool RecoveredTable::announce(ActionItem* action) {
  auto& self = static_cast<RecoveredTable&>(*action);
  const std::vector<std::size_t> columns = self.m_file.columnsInRowOrder();
  QVector<QString> names;
  QVector<MetaInfo> metas;
  for (const std::size_t column : columns) {
    names += QString::fromStdString(self.m_file.column(column).name);
    metas += self.m_file.meta(column);
  }
  OneRow* row = self.getOutputRowForOutputPin(0);
  row->setNumberOfColumns(static_cast<int>(columns.size()));
  row->setColName(names);
  row->setMetaData(metas);
  row->setSortInfos(storedOrder(self.m_file, columns));
  self.announceColumnsOfOutputPin(0);
  if (!self.mustComputeFull()) {
    return true;
  }
  self.m_recovery.stopWhen([&self] { return self.run() != nullptr && !self.run()->isRunning(); });
  self.m_isReading = true;
  self.computeRoutine = &RecoveredTable::end;
  return false;
}

std::unique_ptr<BatchUnit> RecoveredTable::readUnit() {
  const ReadEvent event = m_recovery.next();
  return event.kind == ReadEvent::Kind::end ? nullptr : std::make_unique<Unit>(event);
}

RowBatchPointer RecoveredTable::accept(BatchUnit& unit) {
  if (static_cast<Unit&>(unit).kind() == ReadEvent::Kind::noMemory) {
    MainUI::addLog(LogLevel::error, gel_messages::noMemory(QString::fromStdString(m_file.path())));
    failRun();
    m_isReading = false;
  }
  return unit.batch();
}

int RecoveredTable::maxUnitsAhead() const {
  constexpr int kUnitsAhead = 4;
  return kUnitsAhead;
}

}  // namespace kelvarin
