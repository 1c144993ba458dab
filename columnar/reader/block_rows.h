// The row routine of an action that publishes the rows of decoded blocks on its first output pin.
//
// `Action` derives from ActionItem and has `DecodedBlock* block()`, whose rows are published, and
// `bool takeNextBlock()`, which is false when there is none any more.
// Used by ReadColumnarGel and by the source of `kelvarin gel recover`.
#pragma once

#include "columnar/reader/decoded_block.h"
#include "host/contract/action_item.h"

namespace kelvarin {

// Lets the actions below look at all rows of a block before they come.
template <typename Action>
void offerRowsOfBlock(Action& action) {
  action.offerRowsOnOutputPin(0, *action.block(), action.block()->rowCount(),
                              [](ActionItem* item, std::size_t count) {
                                static_cast<Action&>(*item).block()->skip(count);
                              });
}

template <typename Action>
bool publishRowOfBlock(ActionItem* item) {
  auto& action = static_cast<Action&>(*item);
  OneRow* row = action.getOutputRowForOutputPin(0);
  while (!action.block()->takeRow(row->getAllColForWrite())) [[unlikely]] {
    if (!action.takeNextBlock()) {
      return true;
    }
  }
  action.setRowReadyForOutput(0);
  return false;
}

}  // namespace kelvarin
