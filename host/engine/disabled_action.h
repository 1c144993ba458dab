// Runs in the stead of an action that is switched off: the rows of input pin 0 go through unchanged
// to output pin 0.
//
// The other outputs have the same columns and no rows. A source that is switched off has neither;
// a sink takes its rows and writes nothing. The action itself is not touched.
// Used by: graph_execution.cpp.
// Threads: those of ActionItem.
#pragma once

#include "host/contract/action_item.h"

namespace kelvarin {

class DisabledAction final : public ActionItem {
 public:
  explicit DisabledAction(const ActionItem& action);

  const char* typeName() const override { return m_action.typeName(); }
  void setComputeRoutine() override;
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override;

 private:
  // What is known ahead, counted from the row that was taken last.
  class RowsPassed final : public RowsInHand {
   public:
    void setRows(const RowsAhead& rows) { m_rows = rows; }
    const double* numbers(int column, std::size_t first, std::size_t count,
                          double* buffer) const override {
      return m_rows.numbers(column, first, count, buffer);
    }
    const std::uint32_t* keys(int column, std::size_t first, std::size_t count,
                              std::uint32_t* buffer) const override {
      return m_rows.keys(column, first, count, buffer);
    }
    const unsigned char* const* texts(int column, std::size_t first, std::size_t count,
                                      const unsigned char** buffer) const override {
      return m_rows.texts(column, first, count, buffer);
    }

   private:
    RowsAhead m_rows;
  };

  bool discardRow() { return getNextRowFromInPin(0) == nullptr; }
  bool passRow();
  void announceColumns(const OneRow& columns);
  void offerRowsAhead();
  static void takeRows(ActionItem* action, std::size_t count);

  const ActionItem& m_action;
  bool m_hasColumns = false;
  RowsPassed m_rowsPassed;
  std::size_t m_rowsOffered = 0;  // of the last offer, those that have not gone by
};

}  // namespace kelvarin
