// How the actions of table files read, check and save the attributes that are texts.
//
// Texts may refer to graph parameters, whose values are known when a graph is loaded and again when
// it runs. A fault is reported at both moments: while loading with its place in the graph file, and
// from a reader or writer that was made without a graph.
// Used by: the sources and sinks of host/tables. Threads: plain functions.
#pragma once

#include <functional>
#include <sstream>

#include "host/contract/attribute_reading.h"
#include "host/contract/known_elements.h"

namespace kelvarin {

// Replaces graph parameters by their values.
using TextExpansion = std::function<QString(const QString&)>;

// The attribute's text, `otherwise` when the element has no such attribute.
QString attributeOr(const XMLNode& node, const char16_t* name, const QString& otherwise);
// Writes ` name='value'`.
void saveAttribute(std::wostringstream& out, const wchar_t* name, const QString& value);

// While a graph is loaded, `check(expansion)` names the fault of `node`, or nothing.
void checkWhileLoading(const XMLNode& node,
                       const std::function<QString(const TextExpansion&)>& check);
// Of an action without child elements.
extern const std::vector<KnownElements> kNoElements;

// While a graph is loaded: elements and texts inside `node` that mean nothing are faults.
void checkContentWhileLoading(const XMLNode& node, std::span<const KnownElements> known);

}  // namespace kelvarin
