#include "host/engine/disabled_action.h"

#include "host/contract/row_columns.h"

namespace kelvarin {

DisabledAction::DisabledAction(const ActionItem& action)
    : ActionItem(action.node(), action.globalParameters()), m_action(action) {
  m_inputPinCount = action.inputPinCount();
  m_outputPinCount = action.outputPinCount();
}

void DisabledAction::setComputeRoutine() {
  m_hasColumns = false;
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
  getOutputRowForOutputPin(0)->showValuesOf(row);
  setRowReadyForOutput(0);
  return false;
}

void DisabledAction::announceColumns(const OneRow& columns) {
  m_hasColumns = true;
  for (int pin = 0; pin < outputPinCount(); ++pin) {
    copyColumns(columns, *getOutputRowForOutputPin(pin));
    announceColumnsOfOutputPin(pin);
  }
}

}  // namespace kelvarin
