#include "host/tables/inline/discard.h"

namespace kelvarin {

const ActionDescription& Discard::catalogue() {
  static const ActionDescription entry{
      .typeName = "Discard",
      .toolTip = "Count rows and drop them",
      .tags = {"150_Standard"},
      .keywords = {"discard", "drop", "count", "row", "null", "sink"}};
  return entry;
}

Discard::Discard(XMLNode node, GlobalParameters* parameters) : Described(node, parameters) {
  m_inputPinCount = 1;
  m_outputPinCount = 0;
}

void Discard::setComputeRoutine() {
  computeRoutine = [](ActionItem* action) {
    return action->getNextBatchFromInPin(0).batch == nullptr;
  };
}

}  // namespace kelvarin
