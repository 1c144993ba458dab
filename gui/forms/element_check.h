// Whether an action could be made of an element as it has been edited, and what is wrong with it.
//
// Used by: the editors that hold elements, before they report one.
// Threads: the user-interface thread.
#pragma once

#include <memory>
#include <vector>

#include "host/contract/described_action.h"

namespace kelvarin {

class InfoLine;

struct ElementCheck {
  std::vector<ElementFault> faults;    // errors first
  std::unique_ptr<ActionItem> action;  // made of the element

  bool canBeUsed() const { return faults.empty() || faults.front().level != LogLevel::error; }
};

// `prototype` is any action of the type.
ElementCheck checkElement(const XMLNode& element, ActionItem& prototype,
                          GlobalParameters& parameters);

// Clears the line where there is none.
void showFaults(const ElementCheck& check, InfoLine& line);

}  // namespace kelvarin
