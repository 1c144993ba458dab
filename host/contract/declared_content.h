// Compares what the XML element of an action holds with what the action declares, and finds what
// would otherwise be ignored without a word: misspelt elements and attributes, stray text, and
// values that cannot be used.
//
// Used by: the reader of graph files, the list of actions.
#pragma once

#include "host/contract/described_action.h"

namespace kelvarin {

// Elements and texts come first, then attributes, both in the order of the file. Elements, texts
// and values without a meaning are errors; unknown attributes, and values with an effect of their
// own, are warnings.
KELVARIN_CORE std::vector<ElementFault> contentFaults(const XMLNode& action,
                                                      const ActionDescription& description,
                                                      const GlobalParameters& parameters);

// The values that an attribute takes, for the user: "0 or 1".
KELVARIN_CORE QString valuesInWords(const AttributeDescription& attribute);

}  // namespace kelvarin
