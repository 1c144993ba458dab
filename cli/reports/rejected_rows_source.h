// The source of the graph that writes rejected rows as a table.
//
// It is in no catalogue but that graph's.
// Threads: those of ActionItem and BatchSource.
// Errors: logged, and the run fails.
#pragma once

#include "cli/reports/rejected_rows.h"
#include "host/contract/action_item.h"

namespace kelvarin {

class RejectedRowsSource final : public ActionItem, public BatchSource {
 public:
  static constexpr char kTypeName[] = "RejectedRows";

  // The rows outlive the action, and are taken once.
  RejectedRowsSource(XMLNode node, GlobalParameters* parameters, RejectedRows& rows);

  const char* typeName() const override { return kTypeName; }
  void setComputeRoutine() override { computeRoutine = &RejectedRowsSource::announce; }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

  bool canReadUnits() const override { return m_isReading; }
  std::unique_ptr<BatchUnit> readUnit() override;
  RowBatchPointer accept(BatchUnit& unit) override { return unit.batch(); }
  int maxUnitsAhead() const override { return 1; }
  bool readOn() override;

 private:
  class Unit;

  static bool announce(ActionItem* action);
  static bool end(ActionItem*) { return true; }

  RejectedRows& m_rows;
  bool m_isReading = false;
};

}  // namespace kelvarin
