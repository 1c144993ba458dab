// Finds misspelt elements and stray text inside an action, which would otherwise be ignored without
// a word.
//
// Used by: all actions, each with a table of what may stand where. Threads: plain functions.
#pragma once

#include <span>
#include <vector>

#include <QStringList>

#include "base/export.h"
#include "host/xml/xml_node.h"

namespace kelvarin {

// The elements that may stand inside another one, which then has no text; the first line of a table
// is about the action itself. An element without a line may have text, and has no elements inside.
struct KnownElements {
  QString parent;
  QStringList children;
};

struct UnknownContent {
  XMLNode element;
  QString message;  // without the place, which is the element's
};

// In the order of the file.
KELVARIN_CORE std::vector<UnknownContent> unknownContent(const XMLNode& action,
                                                         std::span<const KnownElements> table);

// "FILE:LINE:COLUMN: MESSAGE"; without a file, "graph" stands for it.
KELVARIN_CORE QString atGraphPlace(const QString& file, XMLNode::Place place,
                                   const QString& message);

}  // namespace kelvarin
