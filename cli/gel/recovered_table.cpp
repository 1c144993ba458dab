#include "cli/gel/recovered_table.h"

#include "cli/gel/messages.h"
#include "columnar/reader/block_rows.h"
#include "columnar/reader/stored_order.h"
#include "host/contract/main_ui.h"

namespace kelvarin {

namespace {

constexpr int kBlocksAhead = 2;

}  // namespace

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

char RecoveredTable::close() {
  m_blocksAhead.reset();
  m_block.reset();
  return 0;
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
  self.m_blocksAhead.emplace(
      [&self](std::unique_ptr<DecodedBlock> spare) {
        return self.m_recovery.next(std::move(spare));
      },
      kBlocksAhead);
  self.computeRoutine = &publishRowOfBlock<RecoveredTable>;
  return !self.takeNextBlock();
}

bool RecoveredTable::takeNextBlock() {
  if (m_block) {
    m_blocksAhead->recycle(std::move(m_block));
  }
  ReadEvent event = m_blocksAhead->next();
  m_block = std::move(event.block);
  if (event.kind == ReadEvent::Kind::noMemory) {
    MainUI::addLog(LogLevel::error, gel_messages::noMemory(QString::fromStdString(m_file.path())));
    failRun();
  }
  if (m_block) {
    offerRowsOfBlock(*this);
  }
  return m_block != nullptr;
}

}  // namespace kelvarin
