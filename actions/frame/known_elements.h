// The elements that the actions with expressions share, and the report of unknown ones.
#pragma once

#include "host/contract/action_item.h"
#include "host/contract/known_elements.h"

namespace kelvarin {

// The lines that every list of input variables needs.
inline const KnownElements kInputVarsElements{QStringLiteral("InputVars"),
                                              {QStringLiteral("InputVar")}};
inline const KnownElements kInputVarElements{QStringLiteral("InputVar"), {QStringLiteral("SL")}};
inline const KnownElements kStringListElements{QStringLiteral("SL"), {QStringLiteral("S")}};

// Logs an error for each unknown element, with its place in the graph file; true when there is one.
bool reportUnknownElements(const ActionItem& action, std::span<const KnownElements> table);

}  // namespace kelvarin
