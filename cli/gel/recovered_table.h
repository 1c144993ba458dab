// The source of the graph that `kelvarin gel recover` runs: the rows of a table that is being
// recovered.
//
// It is in no catalogue but that command's. The recovery belongs to the command, which asks it for
// the outcome when the run is over.
// Threads: those of ActionItem and BatchSource.
// Errors: logged, and the run fails.
#pragma once

#include "columnar/reader/table_recovery.h"
#include "host/contract/action_item.h"

namespace kelvarin {

class RecoveredTable final : public ActionItem, public BatchSource {
 public:
  static constexpr char kTypeName[] = "RecoveredTable";

  // File and recovery outlive the action.
  RecoveredTable(XMLNode node, GlobalParameters* parameters, const GelFile& file,
                 TableRecovery& recovery);

  const char* typeName() const override { return kTypeName; }
  void setComputeRoutine() override { computeRoutine = &RecoveredTable::announce; }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

  bool canReadUnits() const override { return m_isReading; }
  std::unique_ptr<BatchUnit> readUnit() override;
  RowBatchPointer accept(BatchUnit& unit) override;
  int maxUnitsAhead() const override;

 private:
  class Unit;

  static bool announce(ActionItem* action);
  static bool end(ActionItem*) { return true; }

  const GelFile& m_file;
  TableRecovery& m_recovery;
  bool m_isReading = false;
};

}  // namespace kelvarin
