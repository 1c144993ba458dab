// Finds misspelt elements inside an action, which would otherwise be ignored without a word.
#pragma once

#include <span>

#include <QStringList>

#include "host/contract/action_item.h"

namespace kelvarin {

// The elements that may stand inside another one; the first line of a table is about the action
// itself.
struct KnownElements {
  QString parent;
  QStringList children;
};

// The lines that every list of input variables needs.
inline const KnownElements kInputVarsElements{QStringLiteral("InputVars"),
                                              {QStringLiteral("InputVar")}};
inline const KnownElements kInputVarElements{QStringLiteral("InputVar"), {QStringLiteral("SL")}};
inline const KnownElements kStringListElements{QStringLiteral("SL"), {QStringLiteral("S")}};

// Logs an error for each unknown element, with its place in the graph file; true when there is one.
bool reportUnknownElements(const ActionItem& action, std::span<const KnownElements> table);

}  // namespace kelvarin
