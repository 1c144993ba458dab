// The source of the graph that `kelvarin gel recover` runs: the rows of a table that is being
// recovered.
//
// It is in no catalogue but that command's. The recovery belongs to the command, which asks it for
// the outcome when the run is over.
// Threads: the engine's, beside one reading thread.
// Errors: logged, and the run fails.
#pragma once

#include <optional>

#include "columnar/reader/blocks_ahead.h"
#include "columnar/reader/table_recovery.h"
#include "host/contract/action_item.h"

namespace kelvarin {

class RecoveredTable final : public ActionItem {
 public:
  static constexpr char kTypeName[] = "RecoveredTable";

  // File and recovery outlive the action.
  RecoveredTable(XMLNode node, GlobalParameters* parameters, const GelFile& file,
                 TableRecovery& recovery);

  const char* typeName() const override { return kTypeName; }
  char close() override;
  void setComputeRoutine() override { computeRoutine = &RecoveredTable::announce; }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

  // The one whose rows are published; null when there is none.
  DecodedBlock* block() const { return m_block.get(); }
  // False at the end and after a failure.
  bool takeNextBlock();

 private:
  static bool announce(ActionItem* action);

  const GelFile& m_file;
  TableRecovery& m_recovery;
  std::unique_ptr<DecodedBlock> m_block;
  std::optional<BlocksAhead> m_blocksAhead;  // its thread is the first to go
};

}  // namespace kelvarin
