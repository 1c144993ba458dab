#include "host/engine/disabled_action.h"

namespace kelvarin {

DisabledAction::DisabledAction(const ActionItem& action)
    : ActionItem(action.node(), action.globalParameters()), m_action(action) {
  m_inputPinCount = action.inputPinCount();
  m_outputPinCount = action.outputPinCount();
}

void DisabledAction::setComputeRoutine() {
  m_hasColumns = false;
  m_rowsOffered = 0;
  if (m_action.endpoint() == Endpoint::reader || inputPinCount() == 0) {
    computeRoutine = [](ActionItem*) { return true; };
  } else if (outputPinCount() == 0) {
    computeRoutine = [](ActionItem* action) {
      return static_cast<DisabledAction*>(action)->discardRow();
    };
  } else {
    computeRoutine = [](ActionItem* action) {
      return static_cast<DisabledAction*>(action)->passRow();
    };
  }
}

// It stands for an action of one run, and is never in a catalogue.
ActionItem* DisabledAction::createFromXML(XMLNode, GlobalParameters*) {
  return nullptr;
}

bool DisabledAction::passRow() {
  const OneRow* row = getNextRowFromInPin(0);
  if (!m_hasColumns) {
    const OneRow* columns = row == nullptr ? announcedColumnsOfInPin(0) : row;
    if (columns != nullptr) {
      announceColumns(*columns);
    }
  }
  if (row == nullptr) {
    return true;
  }
  offerRowsAhead();
  getOutputRowForOutputPin(0)->showValuesOf(row);
  setRowReadyForOutput(0);
  return false;
}

void DisabledAction::announceColumns(const OneRow& columns) {
  m_hasColumns = true;
  for (int pin = 0; pin < outputPinCount(); ++pin) {
    OneRow* row = getOutputRowForOutputPin(pin);
    row->setNumberOfColumns(columns.sz());
    row->setColName(columns.getColNamesDeep());
    row->setMetaData(columns.getMetaDataDeep());
    row->setSortInfos(columns.getSortInfosDeep());
    announceColumnsOfOutputPin(pin);
  }
}

// What follows may go on as it would without this action: many rows at once.
void DisabledAction::offerRowsAhead() {
  if (m_rowsOffered > 0) {
    --m_rowsOffered;
    return;
  }
  const RowsAhead rows = rowsAheadOnInPin(0);
  if (rows.count < 2) {
    return;
  }
  m_rowsPassed.setRows(rows);
  m_rowsOffered = rows.count - 1;
  offerRowsOnOutputPin(0, m_rowsPassed, rows.count,
                       rows.canBeTaken ? &DisabledAction::takeRows : nullptr);
}

void DisabledAction::takeRows(ActionItem* action, std::size_t count) {
  static_cast<DisabledAction*>(action)->m_rowsOffered -= count;
  action->takeRowsOfInPin(0, count);
}

}  // namespace kelvarin
